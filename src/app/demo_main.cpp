// A demonstration without a person at the keyboard: the real windows under an X server, one call
// walked through the engine simulator by pressing the real controls, and a screenshot of the
// screen at each stage.
//
//   kestrelway-demo OUTDIR [DESTINATION [SCENARIO [performance]]]
// SCENARIO names how the simulated engine lets the call go (isp-password, call-home, ...). With
// call-home the files are fetched (Now), and the transfer window is pictured part way.
// "performance" pulls the performance window down once connected and turns it through its four
// panels, two screenshots of each some seconds apart, before hanging up.
#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QMessageBox>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "client/ui/dialer/core/application.h"
#include "client/ui/dialer/core/main_win.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/engine/frm_get_user_info.h"
#include "client/ui/dialer/engine/frm_get_user_input.h"
#include "client/ui/dialer/engine/frm_isp_login.h"
#include "client/ui/dialer/engine/frm_login.h"
#include "client/ui/dialer/performance/perf_pulldown.h"
#include "client/ui/dialer/side/frm_file_xfer.h"
#include "dravlink/simulator.h"
#include "link/bus_dravlink.h"
#include "platform/qt/form_window.h"
#include "platform/qt/look.h"
#include "platform/qt/qt_platform.h"

namespace {

using kw::dialer::MainWin;

class Demo {
  public:
    Demo(kw::qt::QtPlatform& platform, kw::dialer::Application& app, QString outDir,
         std::string destination, bool performance, bool fetchFiles)
        : platform_(platform),
          app_(app),
          outDir_(std::move(outDir)),
          destination_(std::move(destination)),
          performance_(performance),
          fetchFiles_(fetchFiles) {}

    // Answers the dialogs and boxes that come up, whenever they come.
    void WatchDialogs() {
        auto* timer = new QTimer(qApp);
        QObject::connect(timer, &QTimer::timeout, [this] { AnswerWhatIsUp(); });
        timer->start(150);
    }

    void Run() {
        Wait(
            [this] {
                return app_.Forms().IsLoaded<MainWin>() && !Win().IsLoading &&
                       !Win().IsGettingDialList;
            },
            [this] { ChooseDestination(); });
    }

  private:
    MainWin& Win() { return app_.Form<MainWin>(); }

    QWidget* WidgetNamed(kw::forms::Form& form, const char* name) {
        kw::qt::FormWindow* window = platform_.WindowOf(form);
        return window != nullptr ? window->findChild<QWidget*>(name) : nullptr;
    }

    void Click(kw::forms::Form& form, const char* name) {
        if (QWidget* w = WidgetNamed(form, name)) {
            QTest::mouseClick(w, Qt::LeftButton, {}, w->rect().center());
        }
    }

    void Shot(const QString& name) {
        QApplication::processEvents();
        QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
        const QString path =
            outDir_ + "/" + QString("%1-").arg(++shots_, 2, 10, QChar('0')) + name + ".png";
        screen.save(path);
        std::printf("  %s\n", qPrintable(path));
        std::fflush(stdout);
    }

    // Runs next once ready() holds, checking every 100 ms, for a minute at most.
    void Wait(std::function<bool()> ready, std::function<void()> next, int triesLeft = 600) {
        if (ready()) {
            QTimer::singleShot(400, qApp, next);
            return;
        }
        if (triesLeft == 0) {
            std::printf("  the demonstration stopped waiting\n");
            Finish();
            return;
        }
        QTimer::singleShot(100, qApp, [=, this] { Wait(ready, next, triesLeft - 1); });
    }

    void ChooseDestination() {
        MainWin& win = Win();
        for (int i = 0; i < win.cmboTo.ListCount(); ++i) {
            if (win.cmboTo.List(i) == destination_) {
                win.cmboTo.UserSelect(i);
            }
        }
        Shot("at-rest");
        Click(win, "btnConnect");
        Wait([this] { return Win().imgPhoneDialing.Visible(); },
             [this] {
                 Shot("dialing");
                 Wait([this] { return Win().imgAuthorizingISP.Visible(); },
                      [this] {
                          Shot("isp-login");
                          Wait([this] { return Win().IsConnected; }, [this] { Connected(); });
                      });
             });
    }

    void Connected() {
        Shot("connected");
        if (fetchFiles_) {
            // The offer comes once connected; the demonstration goes on once the transfer is
            // pictured, and its hang-up cancels the rest.
            Wait([this] { return transferShot_; },
                 [this] {
                     fetchFiles_ = false;
                     Connected();
                 });
            return;
        }
        if (performance_) {
            performance_ = false;
            Click(app_.Form<kw::dialer::PerfPulldown>(), "downBtn");
            QTimer::singleShot(3000, qApp, [this] { PerformancePanel(0); });
            return;
        }
        Click(Win(), "btnRxPullout");
        Wait([] { return true; },
             [this] {
                 Shot("prescriber-open");
                 Click(Win(), "btnRxPullout");
                 QTimer::singleShot(1500, qApp, [this] {
                     Click(Win(), "btnConnect");
                     Wait([this] { return !Win().IsConnected && !Win().IsConnecting; },
                          [this] {
                              Shot("disconnected");
                              Finish();
                          });
                 });
             });
    }

    // Two pictures of the panel on show, the numbers moving between them, then the next panel.
    void PerformancePanel(int panel) {
        if (panel == 4) {
            Click(app_.Form<kw::dialer::PerfPulldown>(), "downBtn");
            QTimer::singleShot(1000, qApp, [this] { Connected(); });
            return;
        }
        const QString name = QString("performance-panel%1-").arg(panel);
        PerformanceShot(name + "a");
        QTimer::singleShot(4000, qApp, [this, panel, name] {
            PerformanceShot(name + "b");
            Click(app_.Form<kw::dialer::PerfPulldown>(), "LeftBtn");
            QTimer::singleShot(1500, qApp, [this, panel] { PerformancePanel(panel + 1); });
        });
    }

    // The main window and the performance window under it, at their own size.
    void PerformanceShot(const QString& name) {
        QApplication::processEvents();
        QWidget* main = platform_.WindowOf(Win());
        QWidget* perf = platform_.WindowOf(app_.Form<kw::dialer::PerfPulldown>());
        if (main == nullptr || perf == nullptr) {
            return;
        }
        const QRect area =
            main->frameGeometry().united(perf->frameGeometry()).adjusted(-4, -4, 4, 4);
        QPixmap picture = QGuiApplication::primaryScreen()->grabWindow(0, area.x(), area.y(),
                                                                       area.width(), area.height());
        const QString path =
            outDir_ + "/" + QString("%1-").arg(++shots_, 2, 10, QChar('0')) + name + ".png";
        picture.save(path);
        std::printf("  %s\n", qPrintable(path));
        std::fflush(stdout);
    }

    kw::dialer::frmFileXfer& Transfer() { return app_.Form<kw::dialer::frmFileXfer>(); }

    // The transfer window once its bar is well under way.
    void WatchTransfer() {
        if (transferShot_ || !app_.Forms().IsLoaded<kw::dialer::frmFileXfer>()) {
            return;
        }
        const double done = Transfer().pbXferProgress.Value();
        if (Transfer().Visible() && done >= 20.0 && done <= 80.0) {
            transferShot_ = true;
            Shot("transfer");
        }
    }

    void AnswerWhatIsUp() {
        WatchTransfer();
        if (auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget())) {
            AnswerBox(*box);
            return;
        }
        kw::forms::FormSet& forms = app_.Forms();
        if (auto* login = forms.Peek<kw::dialer::frmLogin>(); login && login->IsModal()) {
            login->txtPassword.UserSetText("demo");
            Click(*login, "cmdOK");
            return;
        }
        if (auto* choice = forms.Peek<kw::dialer::frmGetUserInfo>(); choice && choice->IsModal()) {
            Shot("choice-asked");
            Click(*choice, "btnOK");
            return;
        }
        if (auto* input = forms.Peek<kw::dialer::frmGetUserInput>(); input && input->IsModal()) {
            Shot("input-asked");
            input->txtInput.UserSetText("482913");
            Click(*input, "btnOK");
            return;
        }
        if (auto* isp = forms.Peek<kw::dialer::frmISPLogin>(); isp && isp->IsModal()) {
            if (answered_.insert("isp").second) {
                Shot("isp-password-asked");
            }
            isp->txtUserName.UserSetText("traveller@bluewave");
            isp->txtPassword.UserSetText("demo");
            Click(*isp, "cmdOK");
        }
    }

    void AnswerBox(QMessageBox& box) {
        const std::string key = box.text().toStdString();
        if (answered_.insert(key).second) {
            Shot("box");
        }
        // The call-home offer: Now when the files are wanted, otherwise Later; any other box gets
        // its default button.
        const QString offer = fetchFiles_ ? QStringLiteral("Now") : QStringLiteral("Later");
        for (QAbstractButton* button : box.buttons()) {
            if (button->text().remove('&') == offer) {
                button->click();
                return;
            }
        }
        if (QAbstractButton* button = box.defaultButton()) {
            button->click();
        } else if (!box.buttons().isEmpty()) {
            box.buttons().first()->click();
        }
    }

    void Finish() {
        std::printf("Screenshots of the demonstration are in %s\n", qPrintable(outDir_));
        std::fflush(stdout);
        Click(Win(), "btnCloseWin");
    }

    kw::qt::QtPlatform& platform_;
    kw::dialer::Application& app_;
    QString outDir_;
    std::string destination_;
    bool performance_ = false;
    bool fetchFiles_ = false;
    bool transferShot_ = false;
    int shots_ = 0;
    std::set<std::string> answered_;
};

}  // namespace

int main(int argc, char** argv) {
    QApplication qtApp(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString outDir = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("demo");
    const std::string destination = argc > 2 ? argv[2] : "Engineering Lab";
    QDir().mkpath(outDir);
    kw::qt::UseDarkLook();
    const std::string scenario = argc > 3 ? argv[3] : "";
    kw::dialer::EngineFactory::Register(
        dravlink::kSimulatorName, [scenario](const kw::dialer::EngineContext& context) {
            dravlink::Options options;
            options.scenario = scenario;
            return std::make_shared<dravlink::Simulator>(context.platform, options);
        });
    // The engine's process takes its scenario from DRAVLINK_SCENARIO, which the bus hands it.
    kw::link::RegisterBusEngine();
    const std::string assets = kw::dialer::Application::DefaultAssetsDir();
    kw::qt::QtPlatform platform(assets, "kestrelway-demo");
    kw::dialer::Application app(platform, assets);
    const bool performance = argc > 4 && std::string(argv[4]) == "performance";
    Demo demo(platform, app, outDir, destination, performance, scenario == "call-home");
    demo.WatchDialogs();
    std::printf("Kestrelway demonstration: a call to %s\n", destination.c_str());
    platform.Dispatch([&app] { kw::dialer::Main(app); });
    demo.Run();
    return QApplication::exec();
}
