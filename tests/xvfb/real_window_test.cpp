// The real program under an X server: its windows take the shape of their artwork (what is
// outside the shape shows the desktop), the main window keeps its place and size at another
// density, and the lights come on during a simulated call.
#include <gtest/gtest.h>

#include <spawn.h>
#include <sys/wait.h>
#include <QApplication>
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPixmap>
#include <QProcess>
#include <QScreen>
#include <QThread>
#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
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
namespace layout = kw::dialer::layout;
namespace at = layout::mainwin;
namespace reg = kw::registry;

// The desktop of the bare X server is black.
bool IsDesktop(QRgb pixel) {
    return qRed(pixel) < 8 && qGreen(pixel) < 8 && qBlue(pixel) < 8;
}
int Brightness(QRgb pixel) {
    return qRed(pixel) + qGreen(pixel) + qBlue(pixel);
}

std::string Output(const QStringList& xwininfo) {
    QProcess process;
    process.start("xwininfo", xwininfo);
    process.waitForFinished();
    return process.readAllStandardOutput().toStdString();
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
    const std::string tree = Output({"-root", "-tree"});
    for (std::sregex_iterator it(tree.begin(), tree.end(), kLine), end; it != end; ++it) {
        const std::string info = Output({"-shape", "-id", QString::fromStdString((*it)[1].str())});
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

// Where the main window's artwork stands on a screen of this size: the window centred across and
// a third of the free height down, the artwork inside its cut-away frame.
QPoint ArtworkOnScreen(QSize screen) {
    const int width = at::kWidth + 2 * layout::kFrameWidth;
    const int height = at::kHeight + layout::kFrameHeight + layout::kFrameWidth;
    return {(screen.width() - width) / 2 + layout::kFrameWidth,
            (screen.height() - height) / 3 + layout::kFrameHeight};
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
        OwnChannel(home_);
        reg::Configure(reg::DefaultConfig());
    }
    void TearDown() override {
        if (child_ > 0) {
            kill(child_, SIGKILL);
            waitpid(child_, nullptr, 0);
        }
        fs::remove_all(home_);
    }

    // The one-instance channel lives in these: a program of another run must not answer.
    static void OwnChannel(const fs::path& dir) {
        fs::create_directories(dir / "tmp");
        fs::create_directories(dir / "run");
        fs::permissions(dir / "run", fs::perms::owner_all);
        setenv("TMPDIR", (dir / "tmp").c_str(), 1);
        setenv("XDG_RUNTIME_DIR", (dir / "run").c_str(), 1);
    }

    void Store(reg::HKEY root, const char* key, const char* name, const std::string& v) {
        reg::HKEY k = nullptr;
        ASSERT_EQ(reg::RegCreateKeyExA(root, key, 0, nullptr, 0, reg::KEY_ALL_ACCESS, nullptr, &k,
                                       nullptr),
                  0);
        reg::RegSetValueExA(k, name, 0, reg::REG_SZ, reinterpret_cast<const reg::BYTE*>(v.c_str()),
                            static_cast<reg::DWORD>(v.size() + 1));
        reg::RegCloseKey(k);
    }

    pid_t Spawn(std::vector<std::string> args) {
        std::vector<char*> argv;
        for (std::string& a : args) {
            argv.push_back(a.data());
        }
        argv.push_back(nullptr);
        pid_t pid = 0;
        EXPECT_EQ(posix_spawn(&pid, argv[0], nullptr, nullptr, argv.data(), environ), 0);
        return pid;
    }

    // Starts `kestrelway` for a stored user and gives its windows once those titled so are on
    // screen and the first dial list has settled.
    std::map<std::string, XWindow> Start(const std::vector<std::string>& titles) {
        Store(reg::HKEY_CURRENT_USER, kw::dialer::settings::kUserKey,
              kw::dialer::settings::kUserName, "tester");
        child_ = Spawn({KW_KESTRELWAY});
        std::map<std::string, XWindow> windows;
        auto allShown = [&] {
            return std::all_of(titles.begin(), titles.end(),
                               [&](const std::string& t) { return windows.count(t) > 0; });
        };
        for (int tries = 0; tries < 100 && !allShown(); ++tries) {
            QThread::msleep(200);
            windows = ProgramWindows();
        }
        QThread::msleep(1500);
        return ProgramWindows();
    }

    // Runs the demonstration's call to the lab to its end; `meanwhile` runs while it goes on.
    QDir Demonstrate(const std::function<void()>& meanwhile = [] {}) {
        const fs::path shots = home_ / "shots";
        const pid_t demo = Spawn({KW_DEMO, shots.string(), "Engineering Lab"});
        int status = 0;
        while (waitpid(demo, &status, WNOHANG) == 0) {
            meanwhile();
            QThread::msleep(100);
        }
        return QDir(QString::fromStdString(shots.string()));
    }

    static QImage Screen() { return QGuiApplication::primaryScreen()->grabWindow(0).toImage(); }

    fs::path home_;
    pid_t child_ = 0;
};

TEST_F(RealWindowTest, TheMainWindowOpensCentredAThirdOfTheWayDown) {
    std::map<std::string, XWindow> windows = Start({"Kestrelway"});
    ASSERT_TRUE(windows.count("Kestrelway"));
    const QPoint artwork =
        windows["Kestrelway"].frame.topLeft() + QPoint(layout::kFrameWidth, layout::kFrameHeight);
    const QPoint expected = ArtworkOnScreen(QGuiApplication::primaryScreen()->size());
    EXPECT_EQ(artwork.x(), expected.x());
    EXPECT_EQ(artwork.y(), expected.y());
}

// No pixel of a shaped window outside its artwork reaches the screen: the shape stays inside the
// artwork's rectangle, and the artwork's key pixels that no other window covers show the desktop.
TEST_F(RealWindowTest, EveryShapedWindowKeepsToItsArtwork) {
    namespace perf = layout::perfpulldown;
    const struct {
        const char* title;
        const char* picture;
        QPoint artAt;  // where the artwork stands inside the window
    } shaped[] = {
        {"Kestrelway", at::kPicture, QPoint(layout::kFrameWidth, layout::kFrameHeight)},
        {"PerfPulldown", perf::kPicture, QPoint(perf::Image1.x, perf::Image1.y)},
    };
    std::map<std::string, XWindow> windows = Start({"Kestrelway", "PerfPulldown"});
    const QImage shot = Screen();
    for (const auto& s : shaped) {
        SCOPED_TRACE(s.title);
        ASSERT_TRUE(windows.count(s.title)) << "the window is not on screen";
        const XWindow& w = windows[s.title];
        const kw::dialer::BitmapBits art =
            kw::dialer::ReadBitmapFile(KW_SOURCE_DIR "/assets/" + std::string(s.picture));
        ASSERT_TRUE(w.shape.has_value()) << "the window has no shape";
        EXPECT_TRUE(QRect(s.artAt, QSize(art.width, art.height)).contains(*w.shape))
            << "the shape leaves the artwork";
        int checked = 0;
        for (int y = 0; y < art.height; ++y) {
            for (int x = 0; x < art.width; ++x) {
                const QPoint p = w.frame.topLeft() + s.artAt + QPoint(x, y);
                const bool covered = std::any_of(windows.begin(), windows.end(), [&](auto& other) {
                    return other.first != s.title && other.second.frame.contains(p);
                });
                if (art.At(x, y) == 0 && !covered) {  // index 0 is the palette's key green
                    ++checked;
                    EXPECT_TRUE(IsDesktop(shot.pixel(p))) << "key pixel " << x << "," << y;
                }
            }
        }
        EXPECT_GT(checked, 0);
    }
}

TEST_F(RealWindowTest, TheLightsComeOnDuringASimulatedCall) {
    const QDir shots = Demonstrate();
    const QStringList atRest = shots.entryList({"*-at-rest.png"});
    const QStringList connected = shots.entryList({"*-connected.png"});
    ASSERT_EQ(atRest.size(), 1) << "the demonstration took no picture at rest";
    ASSERT_EQ(connected.size(), 1) << "the call never connected";
    const QImage before(shots.filePath(atRest[0]));
    const QImage after(shots.filePath(connected[0]));
    const QPoint artwork = ArtworkOnScreen(before.size());
    for (const auto& light :
         {at::imgModemDetected, at::imgPhoneDialing, at::imgConnectingISP, at::imgAuthorizingISP,
          at::imgCreatingTunnel, at::imgAuthorizingTunnel}) {
        const QPoint centre = artwork + QPoint(light.x + light.w / 2, light.y + light.h / 2);
        EXPECT_GT(Brightness(after.pixel(centre)), Brightness(before.pixel(centre)) + 120)
            << "light at " << light.x << "," << light.y << " is not lit";
    }
}

// The machine set up for the engine's process: the demonstration's call goes through dravlinkd,
// which the session bus starts, in a process of its own.
TEST_F(RealWindowTest, TheDemonstrationCallsThroughTheEngineProcess) {
    kw::link::testing::PrivateBus bus(home_ / "session",
                                      {.engineInstalled = true, .idleMs = 2000, .scenario = {}});
    reg::Configure(reg::DefaultConfig());
    Store(reg::HKEY_LOCAL_MACHINE, kw::dialer::kEngineSettingKey, kw::dialer::kEngineSettingValue,
          kw::link::kBusEngineName);
    pid_t engine = 0;
    const QDir shots = Demonstrate([&] { engine = engine > 0 ? engine : bus.EnginePid(); });
    EXPECT_GT(engine, 0) << "no engine process served the demonstration";
    EXPECT_EQ(shots.entryList({"*-connected.png"}).size(), 1) << "the call never connected";
}

// The main window as one run of the program shows it at a given density: where the X server has
// it, and its artwork's rectangle as it reached the screen.
struct Shown {
    XWindow window;
    QImage artwork;
};

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
        OwnChannel(home_ / std::to_string(dpi));  // the run before must not answer
        std::map<std::string, XWindow> windows = Start({"Kestrelway"});
        const QImage shot = Screen();
        kill(child_, SIGKILL);
        waitpid(child_, nullptr, 0);
        child_ = 0;
        if (!windows.count("Kestrelway")) {
            return std::nullopt;
        }
        const XWindow w = windows["Kestrelway"];
        const QPoint artAt = w.frame.topLeft() + QPoint(layout::kFrameWidth, layout::kFrameHeight);
        return Shown{w, shot.copy(QRect(artAt, QSize(at::kWidth, at::kHeight)))};
    }

    // The share of the pixels of `r` that look alike in both pictures.
    static double Alike(const QImage& a, const QImage& b, const layout::LayoutRect& r) {
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
    const std::optional<Shown> design = ShowAt(96);
    ASSERT_TRUE(design.has_value()) << "the main window never appeared at 96 dots per inch";
    const std::optional<Shown> dense = ShowAt(144);
    ASSERT_TRUE(dense.has_value()) << "the main window never appeared at 144 dots per inch";

    // The window keeps the artwork's size inside its cut-away frame, its place, and its shape.
    const QRect artwork(QPoint(layout::kFrameWidth, layout::kFrameHeight),
                        QSize(at::kWidth, at::kHeight));
    EXPECT_EQ(dense->window.frame.size(),
              QSize(at::kWidth + 2 * layout::kFrameWidth,
                    at::kHeight + layout::kFrameHeight + layout::kFrameWidth));
    EXPECT_EQ(dense->window.frame.topLeft(), design->window.frame.topLeft());
    ASSERT_TRUE(dense->window.shape.has_value()) << "the window has no shape";
    EXPECT_TRUE(artwork.contains(*dense->window.shape)) << "the shape leaves the artwork";

    // Each light and combo shows at 144 where and as it shows at 96; the text in a combo is drawn
    // from another font size and may differ by a few pixels.
    for (const layout::LayoutRect& r :
         {at::imgModemDetected, at::imgPhoneDialing, at::imgConnectingISP, at::imgAuthorizingISP,
          at::imgCreatingTunnel, at::imgAuthorizingTunnel, at::imgConnectLight, at::cmboFrom,
          at::cmboTo}) {
        EXPECT_GE(Alike(design->artwork, dense->artwork, r), 0.8) << "at " << r.x << "," << r.y;
    }
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
