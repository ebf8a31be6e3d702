#include "link/events.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "platform/automation/failure.h"

namespace kw::link {

using automation::CBool;
using automation::CInt;
using automation::CStr;
using automation::Failure;

namespace {

constexpr std::array<std::string_view, 6> kPrompts = {"GetUsernamePassword",  "GetUserYesNo",
                                                      "GetUserNowLaterNever", "GetUserInfo",
                                                      "GetUserInput",         "GetUserOk"};

[[noreturn]] void Refuse(const std::string& event) {
    throw Failure(automation::err::kTypeMismatch, "The engine raised an unknown event: " + event);
}

// A by-reference string of a handler: read from its slot, written back when the handler is done.
class Text {
  public:
    explicit Text(Variant& slot) : slot_(slot), value_(CStr(slot)) {}
    ~Text() { slot_ = Variant(value_); }
    Text(const Text&) = delete;
    Text& operator=(const Text&) = delete;
    std::string& operator*() { return value_; }

  private:
    Variant& slot_;
    std::string value_;
};

}  // namespace

bool IsPrompt(const std::string& event) {
    return std::find(kPrompts.begin(), kPrompts.end(), event) != kPrompts.end();
}

void RaiseOnSink(dialer::DravlinkEvents& sink, const std::string& event, std::vector<Variant>& a) {
    const auto need = [&](std::size_t n) {
        if (a.size() != n) {
            Refuse(event);
        }
    };
    if (event == "CHXferUpdate") {
        need(2);
        sink.CHXferUpdate(a[0], a[1]);
    } else if (event == "ErrorEvent") {
        need(1);
        Text message(a[0]);
        sink.ErrorEvent(*message);
    } else if (event == "GetConnectionStatistics") {
        need(2);
        sink.GetConnectionStatistics(a[0], a[1]);
    } else if (event == "GetGenericISPList") {
        need(2);
        Text message(a[0]);
        sink.GetGenericISPList(*message, a[1]);
    } else if (event == "GetUserInfo") {
        need(3);
        Text prompt(a[0]);
        Text answer(a[2]);
        sink.GetUserInfo(*prompt, a[1], *answer);
    } else if (event == "GetUserInput") {
        need(3);
        Text prompt(a[0]);
        Text defaultText(a[1]);
        Text answer(a[2]);
        sink.GetUserInput(*prompt, *defaultText, *answer);
    } else if (event == "GetUsernamePassword") {
        need(2);
        Text prompt(a[0]);
        Text user(a[1]);
        sink.GetUsernamePassword(*prompt, *user);
    } else if (event == "GetUserOk") {
        need(1);
        Text message(a[0]);
        sink.GetUserOk(*message);
    } else if (event == "GetUserYesNo") {
        need(2);
        Text question(a[0]);
        bool answer = CBool(a[1]);
        sink.GetUserYesNo(*question, answer);
        a[1] = Variant(answer);
    } else if (event == "GetUserNowLaterNever") {
        need(2);
        Text question(a[0]);
        Text answer(a[1]);
        sink.GetUserNowLaterNever(*question, *answer);
    } else if (event == "DravDebug") {
        need(1);
        Text text(a[0]);
        sink.DravDebug(*text);
    } else if (event == "ProgressUpdate") {
        need(2);
        Text text(a[1]);
        sink.ProgressUpdate(CInt(a[0]), *text);
    } else if (event == "StatusUpdate") {
        need(1);
        Text text(a[0]);
        sink.StatusUpdate(*text);
    } else {
        Refuse(event);
    }
}

void CancelPrompt(const std::string& event, std::vector<Variant>& args) {
    // Where the answer goes in each prompt; GetUserOk has none, and Later puts a transfer off.
    if ((event == "GetUsernamePassword" || event == "GetUserNowLaterNever") && args.size() == 2) {
        args[1] = Variant(std::string(event == "GetUserNowLaterNever" ? "l" : ""));
    } else if (event == "GetUserYesNo" && args.size() == 2) {
        args[1] = Variant(false);
    } else if ((event == "GetUserInfo" || event == "GetUserInput") && args.size() == 3) {
        args[2] = Variant(std::string());
    }
}

namespace {

void WriteBack(std::string& to, const Variant& from) {
    to = CStr(from);
}

}  // namespace

void ForwardingSink::CHXferUpdate(Variant& first, Variant& transfer) {
    std::vector<Variant> a{first, transfer};
    deliver_("CHXferUpdate", a);
}

void ForwardingSink::ErrorEvent(std::string& message) {
    std::vector<Variant> a{Variant(message)};
    deliver_("ErrorEvent", a);
}

void ForwardingSink::GetConnectionStatistics(Variant& ispStats, Variant& vpnStats) {
    std::vector<Variant> a{ispStats, vpnStats};
    deliver_("GetConnectionStatistics", a);
}

void ForwardingSink::GetGenericISPList(std::string& message, Variant& list) {
    std::vector<Variant> a{Variant(message), list};
    deliver_("GetGenericISPList", a);
}

void ForwardingSink::GetUserInfo(std::string& prompt, Variant& choices, std::string& answer) {
    std::vector<Variant> a{Variant(prompt), choices, Variant(answer)};
    deliver_("GetUserInfo", a);
    WriteBack(answer, a[2]);
}

void ForwardingSink::GetUserInput(std::string& prompt, std::string& defaultText,
                                  std::string& answer) {
    std::vector<Variant> a{Variant(prompt), Variant(defaultText), Variant(answer)};
    deliver_("GetUserInput", a);
    WriteBack(answer, a[2]);
}

void ForwardingSink::GetUsernamePassword(std::string& prompt, std::string& user) {
    std::vector<Variant> a{Variant(prompt), Variant(user)};
    deliver_("GetUsernamePassword", a);
    WriteBack(user, a[1]);
}

void ForwardingSink::GetUserOk(std::string& message) {
    std::vector<Variant> a{Variant(message)};
    deliver_("GetUserOk", a);
}

void ForwardingSink::GetUserYesNo(std::string& question, bool& answer) {
    std::vector<Variant> a{Variant(question), Variant(answer)};
    deliver_("GetUserYesNo", a);
    answer = CBool(a[1]);
}

void ForwardingSink::GetUserNowLaterNever(std::string& question, std::string& answer) {
    std::vector<Variant> a{Variant(question), Variant(answer)};
    deliver_("GetUserNowLaterNever", a);
    WriteBack(answer, a[1]);
}

void ForwardingSink::DravDebug(std::string& text) {
    std::vector<Variant> a{Variant(text)};
    deliver_("DravDebug", a);
}

void ForwardingSink::ProgressUpdate(std::int16_t code, std::string& text) {
    std::vector<Variant> a{Variant(code), Variant(text)};
    deliver_("ProgressUpdate", a);
}

void ForwardingSink::StatusUpdate(std::string& text) {
    std::vector<Variant> a{Variant(text)};
    deliver_("StatusUpdate", a);
}

}  // namespace kw::link
