// The call: set-up, statistics, prompts, transfers and tear-down, one timer step at a time.
#include <algorithm>
#include <cmath>

#include "dravlink/credentials.h"
#include "dravlink/simulator.h"
#include "platform/automation/failure.h"
#include "platform/automation/safe_array.h"

namespace dravlink {

using kw::automation::Failure;
using kw::automation::SafeArray;

namespace {

constexpr int kCallInProgress = 1011;
constexpr int kStillDisconnecting = 1012;
constexpr int kBadFromNumber = 1020;
constexpr int kModemBps = 28800;
constexpr int kLanBps = 10000000;
constexpr const char* kMotdText =
    "***Welcome to the Ostvarra network. Scheduled maintenance: the tunnel servers restart on "
    "Sunday between 02:00 and 03:00; calls made then will be dropped.";

std::string WithSpeed(const std::string& text, int bps) {
    return text + " at " + std::to_string(bps) + " bps";
}

}  // namespace

bool Simulator::Current(const std::weak_ptr<Life>& life, int serial) {
    auto alive = life.lock();
    return alive && alive->serial == serial;
}

void Simulator::Progress(std::int16_t code, std::string text) {
    if (auto* sink = EventSink()) {
        sink->ProgressUpdate(code, text);
    }
}

void Simulator::Status(std::string text) {
    if (auto* sink = EventSink()) {
        sink->StatusUpdate(text);
    }
}

void Simulator::Error(std::string code) {
    if (auto* sink = EventSink()) {
        sink->ErrorEvent(code);
    }
}

void Simulator::Enqueue(int delayMs, std::function<void()> run) {
    steps_.push_back(Step{delayMs, std::move(run)});
}

void Simulator::EnqueueFront(int delayMs, std::function<void()> run) {
    steps_.push_front(Step{delayMs, std::move(run)});
}

void Simulator::ScheduleNextStep() {
    if (stepTimer_ != 0 || steps_.empty()) {
        return;
    }
    stepTimer_ = platform_.SetTimer(steps_.front().delayMs, [this] { OnStepTimer(); });
}

void Simulator::OnStepTimer() {
    KillTimer(stepTimer_);
    if (steps_.empty()) {
        return;
    }
    // Taken off the queue before it runs: a handler inside it may replace the whole queue.
    Step step = std::move(steps_.front());
    steps_.pop_front();
    std::weak_ptr<Life> life = life_;
    step.run();
    if (life.expired()) {
        return;  // the engine was released inside a handler
    }
    ScheduleNextStep();
}

// ---- operations of a call ----------------------------------------------------------------------

Variant Simulator::Connect(const std::string& destination, bool) {
    RequireLogon();
    if (call_ && call_->goingDown) {
        throw Failure(kStillDisconnecting, "The previous call is still being brought down.");
    }
    if (call_) {
        throw Failure(kCallInProgress, "A call is already in progress.");
    }
    const Destination* d = store_.FindDestination(destination);
    if (d == nullptr) {
        throw Failure(kw::automation::err::kInvalidCall,
                      "There is no destination called \"" + destination + "\".");
    }
    Location* l = store_.FindLocation(builtLocation_);
    if (l == nullptr && !store_.locations.empty()) {
        l = &store_.locations.front();
    }
    if (l == nullptr) {
        throw Failure(kBadFromNumber, "There is no location to dial from.");
    }

    call_ = std::make_unique<Call>();
    Call& c = *call_;
    c.handle = nextHandle_++;
    c.destination = d->name;
    c.type = d->type;
    c.scenario = ScenarioFor(d->name);
    c.tunnelServer = d->tunnelServer.empty() ? "vpn.ostvarra.example" : d->tunnelServer;
    c.overLan = l->Get("TunnelOverLAN") == "1" || d->type == "VPN";
    c.device = c.overLan || d->type != "ISP" ? d->deviceName : store_.settings.modem;
    if (c.overLan && d->type == "ISP") {
        c.device = store_.settings.vpnDevice;
    }
    for (const auto& row : ComputeDialList(store_, *l, *d).rows) {
        if (row.enabled) {
            c.numbers.push_back(row);
        }
    }
    ++life_->serial;
    steps_.clear();
    PlanCall();
    ScheduleNextStep();
    return Variant(c.handle);
}

void Simulator::PlanCall() {
    const int serial = life_->serial;
    const Call& c = *call_;
    if (c.overLan) {
        if (c.type == "ISP") {
            Enqueue(400, [this, serial] { StepConnected(serial); });
            return;
        }
        Enqueue(400, [this, serial] { StepChooseServer(serial); });
        return;
    }
    Enqueue(600, [this, serial] { StepModem(serial); });
}

void Simulator::StepModem(int serial) {
    std::weak_ptr<Life> life = life_;
    Status("Checking the modem on COM2...");
    if (!Current(life, serial)) {
        return;
    }
    call_->modemUp = true;
    Progress(102, "Modem detected: " + store_.settings.modem);
    if (!Current(life, serial)) {
        return;
    }
    if (call_->numbers.empty() || call_->scenario == scenario::kNoNumbers) {
        Status(
            "Your dial list has no number that may be dialled from this location. Open the "
            "dial list and tick at least one POP, or choose another location.");
        if (!Current(life, serial)) {
            return;
        }
        Error("2002");
        if (Current(life, serial)) {
            BeginTeardown(300);
        }
        return;
    }
    Enqueue(700, [this, serial] { StepDial(serial); });
}

void Simulator::StepDial(int serial) {
    std::weak_ptr<Life> life = life_;
    const Pop& pop = *call_->numbers[call_->current].pop;
    const std::string number = pop.number;
    const std::string where =
        pop.isp + ", " + pop.city + (pop.state.empty() ? "" : " " + pop.state);
    Progress(103, "Dialing " + number + " (" + where + ")");
    if (!Current(life, serial)) {
        return;
    }
    Status("Dialing " + number + " for " + where + ".");
    if (!Current(life, serial)) {
        return;
    }
    if (call_->scenario == scenario::kInvalidNumber) {
        Status("The exchange rejected " + number +
               ". Check the area code and number of this location and its dialing prefixes.");
        if (!Current(life, serial)) {
            return;
        }
        Error("2008");
        // The client normally hangs up now; if it does not, the engine does after a while.
        if (Current(life, serial)) {
            Enqueue(5000, [this] {
                if (call_ && !call_->goingDown) {
                    BeginTeardown(0);
                }
            });
        }
        return;
    }
    if (call_->scenario == scenario::kBusy && call_->current == 0) {
        Enqueue(1500, [this, serial] {
            std::weak_ptr<Life> inner = life_;
            const std::string busy = call_->numbers[call_->current].pop->number;
            if (call_->current + 1 < call_->numbers.size()) {
                Status(busy +
                       " is busy. Busy lines are common in the evening; trying the next "
                       "number in your dial list.");
                if (!Current(inner, serial)) {
                    return;
                }
                ++call_->current;
                EnqueueFront(800, [this, serial] { StepDial(serial); });
                return;
            }
            Status(busy + " is busy and there is no other number to try.");
            if (!Current(inner, serial)) {
                return;
            }
            Error("2006");
            if (Current(inner, serial)) {
                BeginTeardown(300);
            }
        });
        return;
    }
    Enqueue(1500, [this, serial] { StepConnectIsp(serial); });
}

void Simulator::StepConnectIsp(int serial) {
    std::weak_ptr<Life> life = life_;
    const std::string isp = call_->numbers[call_->current].pop->isp;
    call_->linkBps = kModemBps;
    // The modem has carrier from here: the link's counters run while the ISP is negotiated.
    StartStatistics();
    Progress(104, "Connecting to " + isp);
    if (!Current(life, serial)) {
        return;
    }
    Status(WithSpeed("The modem answered and connected", kModemBps) +
           ". Negotiating the link with " + isp + ".");
    if (Current(life, serial)) {
        Enqueue(900, [this, serial] { StepAuthenticateIsp(serial); });
    }
}

void Simulator::StepAuthenticateIsp(int serial) {
    std::weak_ptr<Life> life = life_;
    const std::string isp = call_->numbers[call_->current].pop->isp;
    Progress(105, "Authenticating with " + isp);
    if (!Current(life, serial)) {
        return;
    }
    Status("Logging on to " + isp + " with the login stored for it.");
    if (!Current(life, serial)) {
        return;
    }
    if (call_->scenario == scenario::kIspPassword) {
        Status(isp + " refused the user name or password stored for it.");
        if (!Current(life, serial)) {
            return;
        }
        const std::string key = User() + "|" + isp;
        auto stored = store_.ispLogins.find(key);
        std::string prompt = isp +
                             " refused your login. Enter the user name and password "
                             "this provider gave you.";
        std::string user = stored != store_.ispLogins.end() ? stored->second.first : User();
        if (auto* sink = EventSink()) {
            sink->GetUsernamePassword(prompt, user);
        }
        if (!Current(life, serial)) {
            return;
        }
        const auto caret = user.find('^');
        // "^qqq" is the client's placeholder when it cannot ask now: no login was given.
        if (user.empty() || caret == std::string::npos || user.substr(caret + 1) == "qqq") {
            Status("No login was given for " + isp + "; hanging up.");
            if (Current(life, serial)) {
                BeginTeardown(300);
            }
            return;
        }
        store_.ispLogins[key] = {user.substr(0, caret), EncodePassword(user.substr(caret + 1))};
        store_.SaveIspLogins();
        Status(isp + " accepted the login for " + user.substr(0, caret) + ".");
        if (!Current(life, serial)) {
            return;
        }
    }
    Enqueue(700, [this, serial] { StepIspUp(serial); });
}

void Simulator::StepIspUp(int serial) {
    std::weak_ptr<Life> life = life_;
    const std::string isp = call_->numbers[call_->current].pop->isp;
    call_->ispUp = true;
    StartStatistics();
    Progress(101, WithSpeed("Connected to " + isp, call_->linkBps));
    if (!Current(life, serial)) {
        return;
    }
    Status(
        "The Internet link is up. If pages come slowly, a POP nearer to you or a line "
        "without call waiting usually gives a faster connection.");
    if (!Current(life, serial)) {
        return;
    }
    if (call_->type == "ISP") {
        Enqueue(300, [this, serial] { StepConnected(serial); });
        return;
    }
    Enqueue(500, [this, serial] { StepChooseServer(serial); });
}

void Simulator::StepChooseServer(int serial) {
    std::weak_ptr<Life> life = life_;
    if (call_->overLan) {
        call_->linkBps = kLanBps;
        StartStatistics();
    }
    if (call_->scenario == scenario::kChoice) {
        const std::string base = call_->tunnelServer;
        std::vector<std::string> servers{base, "vpn-east.ostvarra.example",
                                         "vpn-west.ostvarra.example"};
        auto a = SafeArray::OneDim(0, 2);
        for (std::int32_t i = 0; i < 3; ++i) {
            a.Set(i, Variant(servers[static_cast<std::size_t>(i)]));
        }
        Variant choices(std::move(a));
        std::string prompt = "Choose the tunnel server to use for this call:";
        std::string answer;
        if (auto* sink = EventSink()) {
            sink->GetUserInfo(prompt, choices, answer);
        }
        if (!Current(life, serial)) {
            return;
        }
        call_->tunnelServer = answer.empty() ? base : answer;
        Status(answer.empty() ? "No server chosen; using " + base + "."
                              : "Using the tunnel server " + answer + ".");
        if (!Current(life, serial)) {
            return;
        }
    }
    Enqueue(300, [this, serial] { StepCreateTunnel(serial); });
}

void Simulator::StepCreateTunnel(int serial) {
    std::weak_ptr<Life> life = life_;
    const std::string server = call_->tunnelServer;
    call_->tunnelStarted = true;
    Progress(202, "Creating tunnel to " + server);
    if (!Current(life, serial)) {
        return;
    }
    Status("Opening a secure tunnel to " + server + ".");
    if (!Current(life, serial)) {
        return;
    }
    if (call_->scenario == scenario::kTunnelUnreachable) {
        Status("No answer from " + server +
               " after three attempts. The Internet link works; "
               "the tunnel server itself does not respond.");
        if (!Current(life, serial)) {
            return;
        }
        Error("2010");
        if (Current(life, serial)) {
            BeginTeardown(300);
        }
        return;
    }
    if (call_->scenario == scenario::kQuestion) {
        std::string question = server +
                               " offers data compression. It speeds up text and mail "
                               "but not pictures. Turn compression on for this call?";
        bool yes = false;
        if (auto* sink = EventSink()) {
            sink->GetUserYesNo(question, yes);
        }
        if (!Current(life, serial)) {
            return;
        }
        Status(yes ? "Compression is on for this call." : "Compression stays off.");
        if (!Current(life, serial)) {
            return;
        }
    }
    Enqueue(800, [this, serial] { StepAuthenticateTunnel(serial); });
}

void Simulator::StepAuthenticateTunnel(int serial) {
    std::weak_ptr<Life> life = life_;
    const std::string server = call_->tunnelServer;
    Progress(201, "Authenticating with " + server);
    if (!Current(life, serial)) {
        return;
    }
    Status("Presenting your credentials to " + server + ".");
    if (!Current(life, serial)) {
        return;
    }
    if (call_->scenario == scenario::kInput) {
        std::string prompt = "Enter the passcode shown on your token:";
        std::string defaultText;
        std::string answer;
        if (auto* sink = EventSink()) {
            sink->GetUserInput(prompt, defaultText, answer);
        }
        if (!Current(life, serial)) {
            return;
        }
        if (answer.empty()) {
            Status("No passcode was given; the tunnel server closed the session.");
            if (Current(life, serial)) {
                BeginTeardown(300);
            }
            return;
        }
        Status("Passcode accepted.");
        if (!Current(life, serial)) {
            return;
        }
    }
    if (call_->scenario == scenario::kNewCredentials) {
        const std::string user = User();
        const std::string password = "Ost" + std::to_string(1000 + random_() % 9000) + "vr";
        for (auto& account : store_.accounts) {
            if (SameText(account.user, user)) {
                account.password = EncodePassword(password);
                store_.SaveAccounts();
            }
        }
        Status("Your password has expired. " + server +
               " has issued a new one, which is now stored for you.");
        if (!Current(life, serial)) {
            return;
        }
        Progress(207, user + "^" + password);
        if (!Current(life, serial)) {
            return;
        }
    }
    Enqueue(600, [this, serial] { StepConnected(serial); });
}

void Simulator::StepConnected(int serial) {
    std::weak_ptr<Life> life = life_;
    call_->tunnelUp = call_->type != "ISP";
    if (call_->overLan) {
        call_->linkBps = kLanBps;
        StartStatistics();
    }
    Progress(1, "Connected to " + call_->destination);
    if (!Current(life, serial)) {
        return;
    }
    Status("You are connected to " + call_->destination + ".");
    if (!Current(life, serial)) {
        return;
    }
    if (call_->scenario == scenario::kMotd) {
        std::string message = kMotdText;
        if (auto* sink = EventSink()) {
            sink->GetUserOk(message);
        }
        return;
    }
    if (call_->scenario == scenario::kCallHome && !callHomeRefused_) {
        std::string question =
            "There are 2 files waiting for you at home (updated address "
            "book and virus definitions, 96 KB). Fetch them now?";
        std::string answer;
        if (auto* sink = EventSink()) {
            sink->GetUserNowLaterNever(question, answer);
        }
        if (!Current(life, serial)) {
            return;
        }
        if (answer == "y") {
            Status("Fetching 2 files from home.");
            if (Current(life, serial)) {
                StartTransfers();
            }
        } else if (answer == "n") {
            callHomeRefused_ = true;
            Status("The files will not be offered again.");
        } else {
            Status("The files will be offered at your next call.");
        }
    }
}

Variant Simulator::Disconnect(std::int32_t& handle) {
    if (!call_ || call_->handle != handle) {
        return Variant(false);
    }
    if (!call_->goingDown) {
        BeginTeardown(200);
    }
    return Variant(true);
}

void Simulator::BeginTeardown(int delayMs) {
    Call& c = *call_;
    c.goingDown = true;
    ++life_->serial;
    KillTimer(stepTimer_);
    KillTimer(statsTimer_);
    KillTimer(transferTimer_);
    transfers_.clear();
    steps_.clear();
    std::vector<std::pair<std::int16_t, std::string>> codes;
    if (c.tunnelStarted) {
        codes.emplace_back(232, "Tunnel to " + c.tunnelServer + " closed");
    }
    if (c.tunnelUp) {
        codes.emplace_back(231, "Logged off from " + c.tunnelServer);
    }
    if (c.modemUp) {
        codes.emplace_back(132, "Hanging up the modem");
    }
    codes.emplace_back(31, "Logged off");
    codes.emplace_back(32, "The line is down");
    int delay = delayMs;
    for (auto& [code, text] : codes) {
        Enqueue(delay, [this, code = code, text = text] {
            if (code == 32) {
                EndCall();  // before the event: its handler may start the next call
            }
            Progress(code, text);
        });
        delay = 300;
    }
    // A Disconnect from a click, outside any step of the call, must start the teardown itself.
    ScheduleNextStep();
}

void Simulator::EndCall() {
    ++life_->serial;
    KillTimer(statsTimer_);
    KillTimer(transferTimer_);
    transfers_.clear();
    call_.reset();
}

void Simulator::AbortCall() {
    if (!call_) {
        return;
    }
    KillTimer(stepTimer_);
    steps_.clear();
    EndCall();
}

Variant Simulator::GetConnectionNames(std::string& destination, std::string& deviceName) {
    RequireLogon();
    if (!call_ || !(call_->ispUp || call_->tunnelUp || call_->overLan)) {
        return Variant(false);
    }
    destination = call_->destination;
    deviceName = call_->device;
    return Variant(true);
}

Variant Simulator::GetLinkSpeed(const std::string& deviceName) {
    RequireLogon();
    if (call_ && SameText(deviceName, call_->device) && call_->linkBps > 0) {
        return Variant(static_cast<std::int32_t>(call_->linkBps));
    }
    if (SameText(deviceName, store_.settings.modem)) {
        return Variant(std::int32_t{33600});
    }
    if (SameText(deviceName, store_.settings.vpnDevice)) {
        return Variant(std::int32_t{kLanBps});
    }
    return Variant(std::int32_t{0});
}

// ---- statistics ------------------------------------------------------------------------------

void Simulator::StartStatistics() {
    if (statsTimer_ == 0) {
        statsTimer_ = platform_.SetTimer(1000, [this] { OnStatisticsTimer(); });
    }
}

void Simulator::OnStatisticsTimer() {
    if (!call_ || call_->goingDown) {
        KillTimer(statsTimer_);
        return;
    }
    Call& c = *call_;
    std::uniform_real_distribution<double> jitter(0.75, 1.15);
    std::uniform_int_distribution<int> dice(0, 99);
    const bool modem = !c.overLan;
    // A 28.8k modem moves about 3 KB/s down at best; a LAN far more.
    const double rxRate = modem ? 2900.0 * jitter(random_) : 180000.0 * jitter(random_);
    const double txRate = modem ? 420.0 * jitter(random_) : 24000.0 * jitter(random_);
    c.ispRx += rxRate;
    c.ispTx += txRate;
    c.ispFramesIn += static_cast<std::int32_t>(rxRate / 120);
    c.ispFramesOut += static_cast<std::int32_t>(txRate / 90);
    if (modem) {
        c.crc += dice(random_) < 6 ? 1 : 0;
        c.framing += dice(random_) < 2 ? 1 : 0;
        c.hwOverrun += dice(random_) < 1 ? 1 : 0;
        c.bufOverrun += dice(random_) < 1 ? 1 : 0;
        c.timeouts += dice(random_) < 1 ? 1 : 0;
    }
    double vpnRx = 0;
    double vpnTx = 0;
    std::int32_t loss = 0;
    double rttMs = 0;
    if (c.tunnelUp) {
        // The tunnel carries a little less than the link: its own headers take the rest.
        vpnRx = rxRate * 0.91;
        vpnTx = txRate * 0.88;
        c.vpnRx += vpnRx;
        c.vpnTx += vpnTx;
        c.vpnFramesIn += static_cast<std::int32_t>(vpnRx / 120);
        c.vpnFramesOut += static_cast<std::int32_t>(vpnTx / 90);
        loss = modem ? (dice(random_) < 15 ? 1 + dice(random_) % 3 : 0) : 0;
        rttMs = modem ? 180.0 + dice(random_) * 1.6 : 12.0 + dice(random_) * 0.2;
    }

    auto isp = SafeArray::OneDim(0, 11);
    isp.Set(0, Variant(c.alignment));
    isp.Set(1, Variant(c.bufOverrun));
    isp.Set(2, Variant(static_cast<std::int32_t>(c.ispRx)));
    isp.Set(3, Variant(std::round(rxRate)));
    isp.Set(4, Variant(static_cast<std::int32_t>(c.ispTx)));
    isp.Set(5, Variant(-std::round(txRate)));  // transmit below the zero line
    isp.Set(6, Variant(c.crc));
    isp.Set(7, Variant(c.framing));
    isp.Set(8, Variant(c.hwOverrun));
    isp.Set(9, Variant(c.timeouts));
    isp.Set(10, Variant(c.ispFramesIn));
    isp.Set(11, Variant(c.ispFramesOut));
    auto vpn = SafeArray::OneDim(0, 9);
    vpn.Set(0, Variant(static_cast<std::int32_t>(c.vpnRx)));
    vpn.Set(1, Variant(std::round(vpnRx)));
    vpn.Set(2, Variant(static_cast<std::int32_t>(c.vpnTx)));
    vpn.Set(3, Variant(-std::round(vpnTx)));
    vpn.Set(4, Variant(loss));
    vpn.Set(5, Variant(std::round(rttMs)));
    vpn.Set(6, Variant(c.vpnFramesOut));
    vpn.Set(7, Variant(c.vpnFramesIn));
    vpn.Set(8, Variant(std::int32_t{0}));
    vpn.Set(9, Variant(std::int32_t{0}));
    Variant ispStats(std::move(isp));
    Variant vpnStats(std::move(vpn));
    if (auto* sink = EventSink()) {
        sink->GetConnectionStatistics(ispStats, vpnStats);
    }
}

// ---- call-home transfers -----------------------------------------------------------------------

void Simulator::StartTransfers() {
    transfers_ = {Transfer{"\\\\home\\ostvarra\\outbox\\addressbook.dat", 40960},
                  Transfer{"\\\\home\\ostvarra\\outbox\\virusdefs.pkg", 57344}};
    transferFiles_ = static_cast<int>(transfers_.size());
    transferNumber_ = 1;
    if (transferTimer_ == 0) {
        transferTimer_ = platform_.SetTimer(1000, [this] { OnTransferTimer(); });
    }
}

void Simulator::OnTransferTimer() {
    if (transfers_.empty() || !call_) {
        KillTimer(transferTimer_);
        return;
    }
    Transfer& t = transfers_.front();
    const std::int32_t rate = call_->overLan ? 65536 : 8192;
    t.copied = std::min(t.size, t.copied + rate);
    const double percent = std::floor(1000.0 * t.copied / t.size) / 10.0;
    const int secondsLeft = (t.size - t.copied + rate - 1) / rate;

    auto a = SafeArray::OneDim(0, 8);
    a.Set(0, Variant(t.path));
    a.Set(1, Variant(static_cast<std::int32_t>(transferNumber_)));
    a.Set(2, Variant(static_cast<std::int32_t>(transferFiles_)));
    a.Set(3, Variant(t.copied));
    a.Set(4, Variant(t.size));
    a.Set(5, Variant(std::to_string(secondsLeft) + " seconds"));
    a.Set(6, Variant(t.copied == t.size ? "Done" : "Receiving"));
    a.Set(7, Variant(percent));
    a.Set(8, Variant(std::to_string(rate / 1024) + " KB/sec"));
    if (t.copied == t.size) {
        transfers_.pop_front();
        ++transferNumber_;
        if (transfers_.empty()) {
            KillTimer(transferTimer_);
        }
    }
    Variant first;
    Variant transfer(std::move(a));
    if (auto* sink = EventSink()) {
        sink->CHXferUpdate(first, transfer);
    }
}

Variant Simulator::CancelFileTransfer() {
    if (transfers_.empty()) {
        return Variant(false);
    }
    transfers_.clear();
    KillTimer(transferTimer_);
    Status("The transfer from home was cancelled; the files will be offered at your next call.");
    return Variant(true);
}

}  // namespace dravlink
