// The real program under an X server: the main window takes the shape of its artwork (what is
// outside the shape shows the desktop), and the lights come on during a simulated call.
#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <QApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QThread>
#include <algorithm>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <string>
#include <vector>

#include "client/ui/dialer/core/settings.h"
#include "client/ui/dialer/engine/engine_factory.h"
#include "client/ui/dialer/shell/artwork_layout.h"
#include "client/ui/dialer/shell/bitmap_file.h"
#include "link/bus_dravlink.h"
#include "link/private_bus.h"
#include "platform/registry/registry.h"

extern char** environ;

namespace {

namespace fs = std::filesystem;
namespace at = kw::dialer::layout::mainwin;

// The desktop of the bare X server is black.
bool IsDesktop(QRgb pixel) {
    return qRed(pixel) < 8 && qGreen(pixel) < 8 && qBlue(pixel) < 8;
}
int Brightness(QRgb pixel) {
    return qRed(pixel) + qGreen(pixel) + qBlue(pixel);
}

std::string Output(const std::string& command) {
    std::string out;
    if (FILE* pipe = popen(command.c_str(), "r")) {
        char buffer[512];
        while (fgets(buffer, sizeof buffer, pipe) != nullptr) {
            out += buffer;
        }
        pclose(pipe);
    }
    return out;
}

// A top-level window of the program as the X server has it: where it stands and the extents of
// the shape it was given, relative to the window.
struct XWindow {
    QRect frame;
    std::optional<QRect> shape;
};

std::map<std::string, XWindow> ProgramWindows() {
    std::map<std::string, XWindow> windows;
    static const std::regex kLine(R"re((0x[0-9a-f]+) "([^"]+)": \("kestrelway")re");
    static const std::regex kGeometry(
        R"(Absolute upper-left X:\s+(-?\d+)[\s\S]*Absolute upper-left Y:\s+(-?\d+)[\s\S]*Width: (\d+)[\s\S]*Height: (\d+))");
    static const std::regex kShape(R"(Window shape extents:\s+(\d+)x(\d+)\+(-?\d+)\+(-?\d+))");
    const std::string tree = Output("xwininfo -root -tree");
    for (std::sregex_iterator it(tree.begin(), tree.end(), kLine), end; it != end; ++it) {
        const std::string info = Output("xwininfo -shape -id " + (*it)[1].str());
        std::smatch g;
        if (info.find("IsViewable") == std::string::npos ||
            !std::regex_search(info, g, kGeometry)) {
            continue;
        }
        XWindow w{QRect(std::stoi(g[1]), std::stoi(g[2]), std::stoi(g[3]), std::stoi(g[4])), {}};
        std::smatch s;
        if (std::regex_search(info, s, kShape)) {
            w.shape = QRect(std::stoi(s[3]), std::stoi(s[4]), std::stoi(s[1]), std::stoi(s[2]));
        }
        windows[(*it)[2].str()] = w;
    }
    return windows;
}

class RealWindowTest : public ::testing::Test {
  protected:
    void SetUp() override {
        static const fs::path temp = fs::temp_directory_path();  // before TMPDIR points inside
        std::string pattern = (temp / "kw-xvfb-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        home_ = pattern;
        setenv("XDG_CONFIG_HOME", (home_ / "config").c_str(), 1);
        setenv("XDG_DATA_HOME", (home_ / "data").c_str(), 1);
        setenv("KESTRELWAY_ASSETS", KW_SOURCE_DIR "/assets", 1);
        // The one-instance channel lives in these: a program of another run must not answer.
        fs::create_directories(home_ / "tmp");
        fs::create_directories(home_ / "run");
        fs::permissions(home_ / "run", fs::perms::owner_all);
        setenv("TMPDIR", (home_ / "tmp").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (home_ / "run").c_str(), 1);
        kw::registry::Configure(kw::registry::DefaultConfig());
    }
    void TearDown() override {
        if (child_ > 0) {
            kill(child_, SIGKILL);
            waitpid(child_, nullptr, 0);
        }
        fs::remove_all(home_);
    }

    void Store(kw::registry::HKEY root, const char* key, const char* name, const std::string& v) {
        kw::registry::HKEY k = nullptr;
        ASSERT_EQ(kw::registry::RegCreateKeyExA(root, key, 0, nullptr, 0,
                                                kw::registry::KEY_ALL_ACCESS, nullptr, &k, nullptr),
                  0);
        kw::registry::RegSetValueExA(k, name, 0, kw::registry::REG_SZ,
                                     reinterpret_cast<const kw::registry::BYTE*>(v.c_str()),
                                     static_cast<kw::registry::DWORD>(v.size() + 1));
        kw::registry::RegCloseKey(k);
    }

    pid_t Spawn(const std::vector<std::string>& args) {
        std::vector<char*> argv;
        for (const std::string& a : args) {
            argv.push_back(const_cast<char*>(a.c_str()));
        }
        argv.push_back(nullptr);
        pid_t pid = 0;
        EXPECT_EQ(posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ), 0);
        return pid;
    }

    static QImage Screen() { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); }

    fs::path home_;
    pid_t child_ = 0;
};

TEST_F(RealWindowTest, TheMainWindowHasTheShapeOfItsArtwork) {
    fs::create_directories(home_ / "data" / "install");
    Store(kw::registry::HKEY_LOCAL_MACHINE, kw::dialer::settings::kMachineKey,
          kw::dialer::settings::kInstallDir, (home_ / "data" / "install").string());
    Store(kw::registry::HKEY_CURRENT_USER, kw::dialer::settings::kUserKey,
          kw::dialer::settings::kUserName, "tester");
    child_ = Spawn({KW_KESTRELWAY});

    // Where the window stands: in the middle of the screen, a little above centre, with the
    // client area inside the cut-away frame.
    const QSize screen = QGuiApplication::primaryScreen()->size();
    const int frame = kw::dialer::layout::kFrameWidth;
    const int caption = kw::dialer::layout::kFrameHeight;
    const int width = at::kWidth + 2 * frame;
    const int height = at::kHeight + caption + frame;
    const int clientX = (screen.width() - width) / 2 + frame;
    const int clientY = (screen.height() - height) / 3 + caption;

    const kw::dialer::BitmapBits art =
        kw::dialer::ReadBitmapFile(KW_SOURCE_DIR "/assets/" + std::string(at::kPicture));
    const QPoint inside(clientX + at::cmboFrom.x - 2, clientY + at::cmboFrom.y + 4);
    QImage shot;
    for (int tries = 0; tries < 100; ++tries) {
        QThread::msleep(200);
        shot = Screen();
        if (!IsDesktop(shot.pixel(inside))) {
            break;
        }
    }
    ASSERT_FALSE(IsDesktop(shot.pixel(inside))) << "the main window never appeared";
    QThread::msleep(1000);  // the first dial list, and the window settles
    shot = Screen();
    shot.save(QString::fromStdString((home_ / "window.png").string()));

    // The corners of the artwork are the key colour: the desktop shows through them.
    int keyPixels = 0;
    int drawnPixels = 0;
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 10; ++x) {
            const QRgb seen = shot.pixel(clientX + x, clientY + y);
            if (art.At(x, y) == 0) {  // index 0 is the pure green of the palette
                EXPECT_TRUE(IsDesktop(seen)) << "key pixel " << x << "," << y << " was drawn";
                ++keyPixels;
            } else {
                ++drawnPixels;
            }
        }
    }
    EXPECT_GT(keyPixels, 5) << "the artwork has a rounded corner";
    EXPECT_GT(drawnPixels, 5);
    // The emulated caption and frame above the client area are cut away too.
    EXPECT_TRUE(IsDesktop(shot.pixel(clientX + at::kWidth / 2, clientY - caption / 2)));
    // And nothing of pure green reaches the screen anywhere in the window.
    for (int y = 0; y < at::kHeight; y += 3) {
        for (int x = 0; x < at::kWidth; x += 3) {
            const QRgb seen = shot.pixel(clientX + x, clientY + y);
            ASSERT_FALSE(qRed(seen) == 0 && qGreen(seen) == 255 && qBlue(seen) == 0)
                << "key colour visible at " << x << "," << y;
        }
    }
}

// No pixel of a shaped window outside its artwork reaches the screen: the shape stays inside the
// artwork's rectangle, and the artwork's key pixels that no other window covers show the desktop.
TEST_F(RealWindowTest, EveryShapedWindowKeepsToItsArtwork) {
    namespace perf = kw::dialer::layout::perfpulldown;
    struct Shaped {
        const char* title;
        const char* picture;
        QPoint artAt;  // where the artwork stands inside the window
    };
    const Shaped shaped[] = {
        {"Kestrelway", at::kPicture,
         QPoint(kw::dialer::layout::kFrameWidth, kw::dialer::layout::kFrameHeight)},
        {"PerfPulldown", perf::kPicture, QPoint(perf::Image1.x, perf::Image1.y)},
    };
    Store(kw::registry::HKEY_CURRENT_USER, kw::dialer::settings::kUserKey,
          kw::dialer::settings::kUserName, "tester");
    child_ = Spawn({KW_KESTRELWAY});
    std::map<std::string, XWindow> windows;
    for (int tries = 0; tries < 100 && windows.size() < std::size(shaped); ++tries) {
        QThread::msleep(200);
        windows = ProgramWindows();
    }
    QThread::msleep(1000);  // the first dial list, and the window settles
    const QImage shot = Screen();
    for (const Shaped& s : shaped) {
        SCOPED_TRACE(s.title);
        ASSERT_TRUE(windows.count(s.title)) << "the window is not on screen";
        const XWindow& w = windows[s.title];
        const kw::dialer::BitmapBits art =
            kw::dialer::ReadBitmapFile(KW_SOURCE_DIR "/assets/" + std::string(s.picture));
        const QRect artwork(s.artAt, QSize(art.width, art.height));
        ASSERT_TRUE(w.shape.has_value()) << "the window has no shape";
        EXPECT_TRUE(artwork.contains(*w.shape))
            << "shape " << w.shape->x() << "," << w.shape->y() << " " << w.shape->width() << "x"
            << w.shape->height() << " leaves the artwork";
        int checked = 0;
        for (int y = 0; y < art.height; ++y) {
            for (int x = 0; x < art.width; ++x) {
                const QPoint p = w.frame.topLeft() + s.artAt + QPoint(x, y);
                const bool covered = std::any_of(windows.begin(), windows.end(), [&](auto& other) {
                    return other.first != s.title && other.second.frame.contains(p);
                });
                if (art.At(x, y) != 0 || covered) {
                    continue;
                }
                ++checked;
                EXPECT_TRUE(IsDesktop(shot.pixel(p))) << "key pixel " << x << "," << y << " drawn";
            }
        }
        EXPECT_GT(checked, 0);
    }
}

TEST_F(RealWindowTest, TheLightsComeOnDuringASimulatedCall) {
    const fs::path shots = home_ / "shots";
    const pid_t demo = Spawn({KW_DEMO, shots.string(), "Engineering Lab"});
    int status = 0;
    ASSERT_EQ(waitpid(demo, &status, 0), demo);
    QDir dir(QString::fromStdString(shots.string()));
    const QStringList atRest = dir.entryList({"*-at-rest.png"});
    const QStringList connected = dir.entryList({"*-connected.png"});
    ASSERT_EQ(atRest.size(), 1) << "the demonstration took no picture at rest";
    ASSERT_EQ(connected.size(), 1) << "the call never connected";
    const QImage before(dir.filePath(atRest[0]));
    const QImage after(dir.filePath(connected[0]));

    const QSize screen = before.size();
    const int frame = kw::dialer::layout::kFrameWidth;
    const int caption = kw::dialer::layout::kFrameHeight;
    const int clientX = (screen.width() - (at::kWidth + 2 * frame)) / 2 + frame;
    const int clientY = (screen.height() - (at::kHeight + caption + frame)) / 3 + caption;
    for (const auto& light :
         {at::imgModemDetected, at::imgPhoneDialing, at::imgConnectingISP, at::imgAuthorizingISP,
          at::imgCreatingTunnel, at::imgAuthorizingTunnel}) {
        const QPoint centre(clientX + light.x + light.w / 2, clientY + light.y + light.h / 2);
        EXPECT_GT(Brightness(after.pixel(centre)), Brightness(before.pixel(centre)) + 120)
            << "light at " << light.x << "," << light.y << " is not lit";
    }
}

// The machine set up for the engine's process: the demonstration's call goes through dravlinkd,
// which the session bus starts, in a process of its own.
TEST_F(RealWindowTest, TheDemonstrationCallsThroughTheEngineProcess) {
    kw::link::testing::PrivateBus bus(home_ / "session",
                                      {.engineInstalled = true, .idleMs = 2000, .scenario = {}});
    kw::registry::Configure(kw::registry::DefaultConfig());
    Store(kw::registry::HKEY_LOCAL_MACHINE, kw::dialer::kEngineSettingKey,
          kw::dialer::kEngineSettingValue, kw::link::kBusEngineName);
    const fs::path shots = home_ / "shots";
    const pid_t demo = Spawn({KW_DEMO, shots.string(), "Engineering Lab"});
    pid_t engine = 0;
    int status = 0;
    while (waitpid(demo, &status, WNOHANG) == 0) {
        engine = engine > 0 ? engine : bus.EnginePid();
        QThread::msleep(100);
    }
    EXPECT_GT(engine, 0) << "no engine process served the demonstration";
    EXPECT_NE(engine, demo);
    EXPECT_EQ(QDir(QString::fromStdString(shots.string())).entryList({"*-connected.png"}).size(), 1)
        << "the call never connected";
}

// The main window as one run of the program shows it at a given density: where the X server has
// it, and its client area, the artwork's rectangle, as it reached the screen.
struct Shown {
    XWindow window;
    QImage client;
};

// The program shows its main window at `dpi` dots per inch; the caller ends it.
class DensityWindowTest : public RealWindowTest {
  protected:
    void TearDown() override {
        unsetenv("QT_FONT_DPI");
        unsetenv("QT_ENABLE_HIGHDPI_SCALING");
        RealWindowTest::TearDown();
    }

    std::optional<Shown> ShowAt(int dpi) {
        // Without the toolkit's own scaling, so that the program sees the density itself: scaled,
        // it would see 96 and the toolkit would draw everything larger.
        setenv("QT_ENABLE_HIGHDPI_SCALING", "0", 1);
        setenv("QT_FONT_DPI", std::to_string(dpi).c_str(), 1);
        // Each run has its own one-instance channel, so the one before cannot answer.
        const fs::path run = home_ / ("run" + std::to_string(dpi));
        fs::create_directories(run);
        fs::permissions(run, fs::perms::owner_all);
        setenv("XDG_RUNTIME_DIR", run.c_str(), 1);
        fs::create_directories(home_ / ("tmp" + std::to_string(dpi)));
        setenv("TMPDIR", (home_ / ("tmp" + std::to_string(dpi))).c_str(), 1);
        child_ = Spawn({KW_KESTRELWAY});
        std::map<std::string, XWindow> windows;
        for (int tries = 0; tries < 100 && !windows.count("Kestrelway"); ++tries) {
            QThread::msleep(200);
            windows = ProgramWindows();
        }
        QThread::msleep(1500);  // the first dial list, and the window settles
        windows = ProgramWindows();
        const QImage shot = Screen();
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        child_ = 0;
        if (!windows.count("Kestrelway")) {
            return std::nullopt;
        }
        const XWindow w = windows["Kestrelway"];
        const QPoint client = w.frame.topLeft() + QPoint(kw::dialer::layout::kFrameWidth,
                                                         kw::dialer::layout::kFrameHeight);
        return Shown{w, shot.copy(QRect(client, QSize(at::kWidth, at::kHeight)))};
    }

    // The share of the pixels of `r` that look alike in both pictures.
    static double Alike(const QImage& a, const QImage& b, const kw::dialer::layout::LayoutRect& r) {
        int same = 0;
        for (int y = r.y; y < r.y + r.h; ++y) {
            for (int x = r.x; x < r.x + r.w; ++x) {
                same += std::abs(Brightness(a.pixel(x, y)) - Brightness(b.pixel(x, y))) <= 48;
            }
        }
        return static_cast<double>(same) / (r.w * r.h);
    }
};

TEST_F(DensityWindowTest, At144DotsPerInchTheLightsAndCombosStandOnTheirPlacesOnTheArtwork) {
    Store(kw::registry::HKEY_CURRENT_USER, kw::dialer::settings::kUserKey,
          kw::dialer::settings::kUserName, "tester");
    const std::optional<Shown> design = ShowAt(96);
    ASSERT_TRUE(design.has_value()) << "the main window never appeared at 96 dots per inch";
    const std::optional<Shown> dense = ShowAt(144);
    ASSERT_TRUE(dense.has_value()) << "the main window never appeared at 144 dots per inch";

    // The window keeps the artwork's size inside its cut-away frame, and its shape keeps to the
    // artwork.
    const QSize outer(
        at::kWidth + 2 * kw::dialer::layout::kFrameWidth,
        at::kHeight + kw::dialer::layout::kFrameHeight + kw::dialer::layout::kFrameWidth);
    EXPECT_EQ(dense->window.frame.size(), outer);
    EXPECT_EQ(dense->window.frame.topLeft(), design->window.frame.topLeft())
        << "centred by its size on the artwork";
    const QRect artwork(QPoint(kw::dialer::layout::kFrameWidth, kw::dialer::layout::kFrameHeight),
                        QSize(at::kWidth, at::kHeight));
    ASSERT_TRUE(dense->window.shape.has_value()) << "the window has no shape";
    EXPECT_TRUE(artwork.contains(*dense->window.shape))
        << "shape " << dense->window.shape->x() << "," << dense->window.shape->y() << " "
        << dense->window.shape->width() << "x" << dense->window.shape->height()
        << " leaves the artwork";

    // Each light and combo shows at 144 where and as it shows at 96; the text in a combo is drawn
    // from another font size and may differ by a few pixels.
    const struct {
        const char* name;
        kw::dialer::layout::LayoutRect at;
    } controls[] = {{"imgModemDetected", at::imgModemDetected},
                    {"imgPhoneDialing", at::imgPhoneDialing},
                    {"imgConnectingISP", at::imgConnectingISP},
                    {"imgAuthorizingISP", at::imgAuthorizingISP},
                    {"imgCreatingTunnel", at::imgCreatingTunnel},
                    {"imgAuthorizingTunnel", at::imgAuthorizingTunnel},
                    {"imgConnectLight", at::imgConnectLight},
                    {"cmboFrom", at::cmboFrom},
                    {"cmboTo", at::cmboTo}};
    for (const auto& c : controls) {
        EXPECT_GE(Alike(design->client, dense->client, c.at), 0.8) << c.name;
    }
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
