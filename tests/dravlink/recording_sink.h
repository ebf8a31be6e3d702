#pragma once

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "client/ui/dialer/engine/dravlink.h"
#include "platform/automation/safe_array.h"
#include "platform/automation/variant.h"

namespace dravlink::testing {

using kw::automation::CStr;
using kw::automation::Variant;

// What a client saw, in order ("P102", "S", "E", "STATS", "LIST", "OK", "YESNO", "INFO", "INPUT",
// "LOGIN", "NLN", "XFER").
struct Seen {
    std::string what;
    std::string text;
};

// A sink that records everything and hands each event to the test's hook as it arrives; what the
// hook gives is the answer to a prompt (any text is Yes to a question).
class RecordingSink : public kw::dialer::DravlinkEvents {
  public:
    std::vector<Seen> seen;
    std::vector<Variant> lists, transfers;
    std::vector<std::pair<Variant, Variant>> stats;
    std::function<std::string(const Seen&)> on;

    std::vector<int> Codes() const {
        std::vector<int> codes;
        for (const auto& s : seen)
            if (s.what.size() > 1 && s.what[0] == 'P')
                codes.push_back(std::stoi(s.what.substr(1)));
        return codes;
    }
    std::vector<std::string> Of(const std::string& what) const {
        std::vector<std::string> texts;
        for (const auto& s : seen)
            if (s.what == what)
                texts.push_back(s.text);
        return texts;
    }

    void CHXferUpdate(Variant&, Variant& transfer) override {
        transfers.push_back(transfer);
        Add("XFER", CStr(transfer.ToArray().Get(7)));
    }
    void ErrorEvent(std::string& message) override { Add("E", message); }
    void GetConnectionStatistics(Variant& isp, Variant& vpn) override {
        stats.emplace_back(isp, vpn);
        Add("STATS", "");
    }
    void GetGenericISPList(std::string& message, Variant& list) override {
        lists.push_back(list);
        Add("LIST", message);
    }
    void GetUserInfo(std::string& prompt, Variant&, std::string& answer) override {
        answer = Add("INFO", prompt);
    }
    void GetUserInput(std::string& prompt, std::string&, std::string& answer) override {
        answer = Add("INPUT", prompt);
    }
    // Records the name offered, not the prompt.
    void GetUsernamePassword(std::string&, std::string& user) override {
        user = Add("LOGIN", user);
    }
    void GetUserOk(std::string& message) override { Add("OK", message); }
    void GetUserYesNo(std::string& question, bool& answer) override {
        answer = !Add("YESNO", question).empty();
    }
    void GetUserNowLaterNever(std::string& question, std::string& answer) override {
        answer = Add("NLN", question);
    }
    void DravDebug(std::string&) override {}
    void ProgressUpdate(std::int16_t code, std::string& text) override {
        Add("P" + std::to_string(code), text);
    }
    void StatusUpdate(std::string& text) override { Add("S", text); }

  private:
    std::string Add(std::string what, std::string text) {
        seen.push_back(Seen{std::move(what), std::move(text)});
        const Seen event = seen.back();  // the hook may bring more events
        return on ? on(event) : "";
    }
};

// Whether any of the texts holds part.
inline bool Has(const std::vector<std::string>& texts, const std::string& part) {
    return std::any_of(texts.begin(), texts.end(),
                       [&](const std::string& t) { return t.find(part) != std::string::npos; });
}

}  // namespace dravlink::testing
