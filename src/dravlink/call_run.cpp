// A call goes up one timer step at a time; each step raises its events and queues the next.
#include "dravlink/call_run.h"

#include <string>
#include <vector>

#include "dravlink/credentials.h"
#include "dravlink/secrets.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::SafeArray;
using kw::automation::Variant;
using kw::dialer::DravlinkEvents;

namespace {

constexpr const char* kMotdText =
    "***Welcome to the Ostvarra network. Scheduled maintenance: the tunnel servers restart on "
    "Sunday between 02:00 and 03:00; calls made then will be dropped.";

std::string WithSpeed(const std::string& text, int bps) {
    return text + " at " + std::to_string(bps) + " bps";
}

// Whether anything answers at a dotted address: one that cannot be an address (an octet above
// 255, a missing one), a network or broadcast address, or the documentation range 192.0.2.0/24
// reaches nobody.
bool AddressAnswers(const std::string& address) {
    std::vector<int> octets;
    std::size_t start = 0;
    for (;;) {
        const std::size_t end = address.find('.', start);
        const std::string part = address.substr(start, end - start);
        if (part.empty() || part.size() > 3 ||
            part.find_first_not_of("0123456789") != std::string::npos) {
            return false;
        }
        octets.push_back(std::stoi(part));
        if (end == std::string::npos) {
            break;
        }
        start = end + 1;
    }
    if (octets.size() != 4) {
        return false;
    }
    for (const int octet : octets) {
        if (octet > 255) {
            return false;
        }
    }
    if (octets[0] == 0 || octets[3] == 0 || octets[3] == 255) {
        return false;
    }
    return !(octets[0] == 192 && octets[1] == 0 && octets[2] == 2);
}

}  // namespace

CallPlan PlanCall(const Store& store, const std::string& user, const Destination& d,
                  const Location& from) {
    CallPlan plan;
    plan.destination = d.name;
    plan.type = d.type;
    plan.tunnelServer = d.tunnelServer.empty() ? "vpn.ostvarra.example" : d.tunnelServer;
    plan.overLan = from.Get("TunnelOverLAN") == "1" || d.type == "VPN";
    plan.device = plan.overLan || d.type != "ISP" ? d.deviceName : store.settings.modem;
    if (plan.overLan && d.type == "ISP") {
        plan.device = store.settings.vpnDevice;
    }
    for (const auto& row : ComputeDialList(store, user, from, d).rows) {
        if (row.enabled) {
            plan.numbers.push_back(row);
        }
    }
    return plan;
}

CallRun::CallRun(CallHost& host, CallPlan plan) : host_(host), plan_(std::move(plan)) {}

CallRun::~CallRun() {
    KillTimer(stepTimer_);
    KillTimer(statsTimer_);
    KillTimer(transferTimer_);
}

void CallRun::KillTimer(kw::forms::TimerId& id) {
    if (id != 0) {
        host_.Timers().KillTimer(id);
        id = 0;
    }
}

bool CallRun::Progress(std::int16_t code, std::string text) {
    return Raise([&](DravlinkEvents& sink) { sink.ProgressUpdate(code, text); });
}

bool CallRun::Status(std::string text) {
    return Raise([&](DravlinkEvents& sink) { sink.StatusUpdate(text); });
}

bool CallRun::Error(std::string code) {
    return Raise([&](DravlinkEvents& sink) { sink.ErrorEvent(code); });
}

// A write of the engine's files during the call: when it fails the client hears why as an
// error, and the call goes on with what it holds in memory. False once the call has ended.
bool CallRun::Stored(const std::function<void()>& write) {
    try {
        write();
    } catch (const kw::automation::Failure& e) {
        return Error(e.Description());
    } catch (const DataError& e) {
        return Error(e.what());
    }
    return true;
}

// Says why, raises the error and hangs up, unless a handler has ended the call meanwhile.
void CallRun::Fail(std::string why, std::string code) {
    if (Status(std::move(why)) && Error(std::move(code))) {
        BeginTeardown(300);
    }
}

// ---- the step queue ----------------------------------------------------------------------------

void CallRun::Enqueue(int delayMs, std::function<void()> run) {
    steps_.push_back(Step{delayMs, std::move(run)});
}

void CallRun::ScheduleNextStep() {
    if (stepTimer_ != 0 || steps_.empty()) {
        return;
    }
    stepTimer_ = host_.Timers().SetTimer(steps_.front().delayMs, [this] { OnStepTimer(); });
}

void CallRun::OnStepTimer() {
    KillTimer(stepTimer_);
    if (steps_.empty()) {
        return;
    }
    // Taken off the queue before it runs: a handler inside it may replace the whole queue.
    Step step = std::move(steps_.front());
    steps_.pop_front();
    const std::weak_ptr<const bool> alive = alive_;
    step.run();
    if (alive.expired()) {
        return;  // the call ended, or the engine was released, inside a handler
    }
    ScheduleNextStep();
}

void CallRun::Start() {
    if (plan_.overLan && plan_.type == "ISP") {
        Enqueue(400, [this] { StepConnected(); });
    } else if (plan_.overLan) {
        Enqueue(400, [this] { StepChooseServer(); });
    } else {
        Enqueue(600, [this] { StepModem(); });
    }
    ScheduleNextStep();
}

// ---- the modem and the ISP ---------------------------------------------------------------------

void CallRun::StepModem() {
    if (!Status("Checking the modem on COM2...")) {
        return;
    }
    modemUp_ = true;
    if (!Progress(102, "Modem detected: " + host_.Records().settings.modem)) {
        return;
    }
    if (plan_.numbers.empty() || plan_.scenario == scenario::kNoNumbers) {
        Fail(
            "Your dial list has no number that may be dialled from this location. Open the "
            "dial list and tick at least one POP, or choose another location.",
            "2002");
        return;
    }
    Enqueue(700, [this] { StepDial(); });
}

void CallRun::StepDial() {
    const Pop& pop = Dialled();
    const std::string number = pop.number;
    const std::string where =
        pop.isp + ", " + pop.city + (pop.state.empty() ? "" : " " + pop.state);
    if (!Progress(103, "Dialing " + number + " (" + where + ")") ||
        !Status("Dialing " + number + " for " + where + ".")) {
        return;
    }
    if (plan_.scenario == scenario::kInvalidNumber) {
        if (Status("The exchange rejected " + number +
                   ". Check the area code and number of this location and its dialing "
                   "prefixes.") &&
            Error("2008")) {
            // The client normally hangs up now; if it does not, the engine does after a while.
            Enqueue(5000, [this] { BeginTeardown(0); });
        }
        return;
    }
    if (plan_.scenario == scenario::kBusy && current_ == 0) {
        Enqueue(1500, [this] { StepBusy(); });
        return;
    }
    Enqueue(1500, [this] { StepConnectIsp(); });
}

void CallRun::StepBusy() {
    const std::string busy = Dialled().number;
    if (current_ + 1 >= plan_.numbers.size()) {
        Fail(busy + " is busy and there is no other number to try.", "2006");
        return;
    }
    if (!Status(busy + " is busy. Busy lines are common in the evening; trying the next number in "
                       "your dial list.")) {
        return;
    }
    ++current_;
    Enqueue(800, [this] { StepDial(); });
}

void CallRun::StepConnectIsp() {
    const std::string isp = Dialled().isp;
    linkBps_ = plan_.scenario == scenario::kFastLink ? kFastLineBps : kModemBps;
    // The modem has carrier from here: the link's counters run while the ISP is negotiated.
    StartStatistics();
    if (Progress(104, "Connecting to " + isp) &&
        Status(WithSpeed("The modem answered and connected", kModemBps) +
               ". Negotiating the link with " + isp + ".")) {
        Enqueue(900, [this] { StepAuthenticateIsp(); });
    }
}

void CallRun::StepAuthenticateIsp() {
    const std::string isp = Dialled().isp;
    if (!Progress(105, "Authenticating with " + isp) ||
        !Status("Logging on to " + isp + " with the login stored for it.")) {
        return;
    }
    if (plan_.scenario == scenario::kIspPassword && !AskIspLogin(isp)) {
        return;
    }
    Enqueue(700, [this] { StepIspUp(); });
}

// The ISP refused the stored login: asks for another and stores it. False when the call stops.
bool CallRun::AskIspLogin(const std::string& isp) {
    if (!Status(isp + " refused the user name or password stored for it.")) {
        return false;
    }
    const std::string key = host_.User() + "|" + isp;
    const auto& logins = host_.Records().ispLogins;
    auto stored = logins.find(key);
    std::string prompt =
        isp + " refused your login. Enter the user name and password this provider gave you.";
    std::string user = stored != logins.end() ? stored->second.first : host_.User();
    if (!Raise([&](DravlinkEvents& sink) { sink.GetUsernamePassword(prompt, user); })) {
        return false;
    }
    const auto caret = user.find('^');
    // "^qqq" is the client's placeholder when it cannot ask now: no login was given.
    if (user.empty() || caret == std::string::npos || user.substr(caret + 1) == "qqq") {
        if (Status("No login was given for " + isp + "; hanging up.")) {
            BeginTeardown(300);
        }
        return false;
    }
    Store& store = host_.Records();
    const std::string previous = logins.count(key) ? logins.at(key).second : "";
    const bool kept = Stored([&] {
        store.ispLogins[key] = {user.substr(0, caret),
                                store.secrets->Keep(user.substr(caret + 1), previous)};
        store.SaveIspLogins();
    });
    if (!kept) {
        return false;
    }
    return Status(isp + " accepted the login for " + user.substr(0, caret) + ".");
}

void CallRun::StepIspUp() {
    const std::string isp = Dialled().isp;
    ispUp_ = true;
    StartStatistics();
    if (!Progress(101, WithSpeed("Connected to " + isp, linkBps_)) ||
        !Status("The Internet link is up. If pages come slowly, a POP nearer to you or a line "
                "without call waiting usually gives a faster connection.")) {
        return;
    }
    if (plan_.type == "ISP") {
        Enqueue(300, [this] { StepConnected(); });
        return;
    }
    Enqueue(500, [this] { StepChooseServer(); });
}

// ---- the tunnel --------------------------------------------------------------------------------

void CallRun::StepChooseServer() {
    if (plan_.overLan) {
        linkBps_ = kLanBps;
        StartStatistics();
    }
    if (plan_.scenario == scenario::kChoice && !AskServer()) {
        return;
    }
    Enqueue(300, [this] { StepCreateTunnel(); });
}

bool CallRun::AskServer() {
    const std::string base = plan_.tunnelServer;
    const std::string servers[] = {base, "vpn-east.ostvarra.example", "vpn-west.ostvarra.example"};
    auto a = SafeArray::OneDim(0, 2);
    for (std::int32_t i = 0; i < 3; ++i) {
        a.Set(i, Variant(servers[i]));
    }
    Variant choices(std::move(a));
    std::string prompt = "Choose the tunnel server to use for this call:";
    std::string answer;
    if (!Raise([&](DravlinkEvents& sink) { sink.GetUserInfo(prompt, choices, answer); })) {
        return false;
    }
    plan_.tunnelServer = answer.empty() ? base : answer;
    return Status(answer.empty() ? "No server chosen; using " + base + "."
                                 : "Using the tunnel server " + answer + ".");
}

void CallRun::StepCreateTunnel() {
    const std::string alternate = ReadAlternateTunnelServer();
    if (!alternate.empty()) {
        plan_.tunnelServer = alternate;
    }
    const std::string server = plan_.tunnelServer;
    tunnelStarted_ = true;
    if (!Progress(202, "Creating tunnel to " + server) ||
        !Status(alternate.empty()
                    ? "Opening a secure tunnel to " + server + "."
                    : "Opening a secure tunnel to the alternate server " + server + ".")) {
        return;
    }
    if (plan_.scenario == scenario::kTunnelUnreachable ||
        (!alternate.empty() && !AddressAnswers(alternate))) {
        Fail("No answer from " + server +
                 " after three attempts. The Internet link works; the tunnel server itself does "
                 "not respond.",
             "2010");
        return;
    }
    if (plan_.scenario == scenario::kQuestion && !AskCompression()) {
        return;
    }
    Enqueue(800, [this] { StepAuthenticateTunnel(); });
}

bool CallRun::AskCompression() {
    std::string question = plan_.tunnelServer +
                           " offers data compression. It speeds up text and mail but not "
                           "pictures. Turn compression on for this call?";
    bool yes = false;
    if (!Raise([&](DravlinkEvents& sink) { sink.GetUserYesNo(question, yes); })) {
        return false;
    }
    return Status(yes ? "Compression is on for this call." : "Compression stays off.");
}

void CallRun::StepAuthenticateTunnel() {
    const std::string server = plan_.tunnelServer;
    if (!Progress(201, "Authenticating with " + server) ||
        !Status("Presenting your credentials to " + server + ".")) {
        return;
    }
    if (plan_.scenario == scenario::kInput && !AskPasscode()) {
        return;
    }
    if (plan_.scenario == scenario::kNewCredentials && !IssueNewPassword()) {
        return;
    }
    Enqueue(600, [this] { StepConnected(); });
}

bool CallRun::AskPasscode() {
    std::string prompt = "Enter the passcode shown on your token:";
    std::string defaultText;
    std::string answer;
    if (!Raise([&](DravlinkEvents& sink) { sink.GetUserInput(prompt, defaultText, answer); })) {
        return false;
    }
    if (answer.empty()) {
        if (Status("No passcode was given; the tunnel server closed the session.")) {
            BeginTeardown(300);
        }
        return false;
    }
    return Status("Passcode accepted.");
}

bool CallRun::IssueNewPassword() {
    const std::string user = host_.User();
    const std::string password = "Ost" + std::to_string(1000 + host_.Random()() % 9000) + "vr";
    Store& store = host_.Records();
    for (auto& account : store.accounts) {
        if (SameText(account.user, user)) {
            const bool kept = Stored([&] {
                account.password = store.secrets->Keep(password, account.password);
                store.SaveAccounts();
            });
            if (!kept) {
                return false;
            }
        }
    }
    return Status("Your password has expired. " + plan_.tunnelServer +
                  " has issued a new one, which is now stored for you.") &&
           Progress(207, user + "^" + password);
}

void CallRun::StepConnected() {
    tunnelUp_ = plan_.type != "ISP";
    if (plan_.overLan) {
        linkBps_ = kLanBps;
        StartStatistics();
    }
    if (!Progress(1, "Connected to " + plan_.destination) ||
        !Status("You are connected to " + plan_.destination + ".")) {
        return;
    }
    if (plan_.scenario == scenario::kMotd) {
        std::string message = kMotdText;
        Raise([&](DravlinkEvents& sink) { sink.GetUserOk(message); });
        return;
    }
    if (plan_.scenario == scenario::kCallHome && !host_.CallHomeRefused()) {
        OfferCallHome();
    }
}

void CallRun::OfferCallHome() {
    std::string question =
        "There are 3 files waiting for you at home (updated address book, virus definitions "
        "and policy, 472 KB). Fetch them now?";
    std::string answer;
    if (!Raise([&](DravlinkEvents& sink) { sink.GetUserNowLaterNever(question, answer); })) {
        return;
    }
    if (answer == "y") {
        if (Status("Fetching 3 files from home.")) {
            StartTransfer();
        }
    } else if (answer == "n") {
        host_.RefuseCallHome();
        Status("The files will not be offered again.");
    } else {
        Status("The files will be offered at your next call.");
    }
}

// ---- the way down ------------------------------------------------------------------------------

void CallRun::HangUp() {
    if (!goingDown_) {
        BeginTeardown(200);
    }
}

void CallRun::BeginTeardown(int delayMs) {
    goingDown_ = true;
    KillTimer(stepTimer_);
    KillTimer(statsTimer_);
    KillTimer(transferTimer_);
    transfer_.Cancel();
    steps_.clear();
    int delay = delayMs;
    for (auto& [code, text] : TeardownCodes()) {
        Enqueue(delay, [this, code = code, text = text] { Progress(code, text); });
        delay = 300;
    }
    Enqueue(300, [this] { LineDown(); });
    // A Disconnect from a click, outside any step of the call, must start the teardown itself.
    ScheduleNextStep();
}

// What comes down, in order, before the line itself.
std::vector<std::pair<std::int16_t, std::string>> CallRun::TeardownCodes() const {
    std::vector<std::pair<std::int16_t, std::string>> codes;
    if (tunnelStarted_) {
        codes.emplace_back(232, "Tunnel to " + plan_.tunnelServer + " closed");
    }
    if (tunnelUp_) {
        codes.emplace_back(231, "Logged off from " + plan_.tunnelServer);
    }
    if (modemUp_) {
        codes.emplace_back(132, "Hanging up the modem");
    }
    codes.emplace_back(31, "Logged off");
    return codes;
}

void CallRun::LineDown() {
    // The run ends before the event, so that its handler may start the next call; nothing of
    // the run is touched after CallEnded.
    CallHost& host = host_;
    host.CallEnded();
    std::string text = "The line is down";
    if (auto* sink = host.Sink()) {
        sink->ProgressUpdate(32, text);
    }
}

// ---- statistics and transfers ------------------------------------------------------------------

void CallRun::StartStatistics() {
    LinkProfile line;
    line.bitsPerSecond = linkBps_;
    line.modem = !plan_.overLan && linkBps_ == kModemBps;
    line.traffic = plan_.scenario == scenario::kFastLink   ? Traffic::Swells
                   : plan_.scenario == scenario::kLongCall ? Traffic::LongRun
                                                           : Traffic::Ordinary;
    statistics_.SetLink(line);
    if (statsTimer_ == 0) {
        statsTimer_ = host_.Timers().SetTimer(1000, [this] { OnStatisticsTimer(); });
    }
}

void CallRun::OnStatisticsTimer() {
    if (goingDown_) {
        KillTimer(statsTimer_);
        return;
    }
    auto report = statistics_.Tick(host_.Random(), tunnelUp_);
    Raise([&](DravlinkEvents& sink) { sink.GetConnectionStatistics(report.first, report.second); });
}

void CallRun::StartTransfer() {
    transfer_.Start();
    if (transferTimer_ == 0) {
        transferTimer_ = host_.Timers().SetTimer(1000 / CallHomeTransfer::kReportsPerSecond,
                                                 [this] { OnTransferTimer(); });
    }
}

void CallRun::OnTransferTimer() {
    if (!transfer_.Active()) {
        KillTimer(transferTimer_);
        return;
    }
    Variant report = transfer_.Advance(plan_.overLan);
    if (!transfer_.Active()) {
        KillTimer(transferTimer_);
    }
    Variant first;
    Raise([&](DravlinkEvents& sink) { sink.CHXferUpdate(first, report); });
}

bool CallRun::CancelTransfer() {
    if (!transfer_.Active()) {
        return false;
    }
    transfer_.Cancel();
    KillTimer(transferTimer_);
    Status("The transfer from home was cancelled; the files will be offered at your next call.");
    return true;
}

}  // namespace dravlink
