// The application's shell: the menu and the switch, one window however often it is opened, and
// one instance per user, shared with the headless service.
#include <gtest/gtest.h>

#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <csignal>
#include <nlohmann/json.hpp>

#include "app/ostrelle_app.h"
#include "app/status_icon.h"
#include "app/tray_menu.h"
#include "cli/cli_runner.h"
#include "testing/scratch_home.h"

namespace ostrelle::app {
namespace {

using testing::BackgroundCLI;
using testing::runCLI;
using testing::ScratchHome;

const std::string appPath = OSTRELLE_APP_PATH;
const std::vector<std::string> offscreen{"QT_QPA_PLATFORM=offscreen"};

std::unique_ptr<OstrelleApp> startApp(EpollMainQueue& queue, const ScratchHome& home) {
    AppOptions options;
    options.replay = std::vector<RecordingEvent>{};
    options.dryRun = true;
    auto started = OstrelleApp::start(queue, home.lookup(), std::move(options));
    if (const auto* problem = std::get_if<std::string>(&started)) ADD_FAILURE() << *problem;
    return std::move(std::get<std::unique_ptr<OstrelleApp>>(started));
}

std::vector<QString> menuTexts(const QMenu& menu) {
    std::vector<QString> texts;
    for (const QAction* action : menu.actions())
        texts.push_back(action->isSeparator() ? "—" : action->text());
    return texts;
}

int visibleMainWindows() {
    int count = 0;
    for (const QWidget* widget : QApplication::topLevelWidgets())
        count += widget->objectName() == "main" && widget->isVisible() ? 1 : 0;
    return count;
}

TEST(Shell, TheMenuDrivesTheSwitchAndOpeningTwiceGivesOneWindow) {
    const ScratchHome home;
    EpollMainQueue queue;
    const auto app = startApp(queue, home);
    TrayMenu& menu = *app->trayMenu();
    EXPECT_EQ(menuTexts(menu), (std::vector<QString>{"Active", "—", "Open Ostrelle…", "—", "Quit Ostrelle"}));
    EXPECT_EQ(menu.quitAction()->shortcut(), QKeySequence(QKeySequence::Quit));

    // The offscreen platform has no tray, so the window is open from the start, as on plain GNOME.
    EXPECT_EQ(visibleMainWindows(), 1);
    menu.openAction()->trigger();
    menu.openAction()->trigger();
    EXPECT_EQ(visibleMainWindows(), 1);
    EXPECT_EQ(app->mainWindow()->windowTitle(), "Ostrelle");

    ASSERT_TRUE(menu.activeAction()->isChecked());
    menu.activeAction()->trigger();
    EXPECT_FALSE(app->engine().isEnabled());
    app->engine().setEnabled(true);  // the switch changed elsewhere shows in the menu
    EXPECT_TRUE(menu.activeAction()->isChecked());
}

TEST(Shell, TheStatusIconFadesWhilePaused) {
    const QImage active = statusIcon(true, Qt::black).pixmap(22).toImage();
    const QImage paused = statusIcon(false, Qt::black).pixmap(22).toImage();
    int strongest = 0;
    int strongestPaused = 0;
    for (int y = 0; y < active.height(); ++y) {
        for (int x = 0; x < active.width(); ++x) {
            strongest = std::max(strongest, qAlpha(active.pixel(x, y)));
            strongestPaused = std::max(strongestPaused, qAlpha(paused.pixel(x, y)));
        }
    }
    EXPECT_EQ(strongest, 255);
    EXPECT_NEAR(strongestPaused, 255 * pausedOpacity, 1.0);
}

nlohmann::json status(const ScratchHome& home) {
    const auto result = runCLI({"status"}, "", home);
    return nlohmann::json::parse(result.out, nullptr, false);
}

TEST(Shell, EachNewcomerTakesOverTheServiceAndTheApplicationAlike) {
    const ScratchHome home;
    BackgroundCLI service({"run", "--dry-run"}, home);
    ASSERT_TRUE(service.waitUntilReady());

    BackgroundCLI first({"--dry-run"}, home, offscreen, appPath);
    ASSERT_TRUE(first.waitUntilReady());
    EXPECT_EQ(service.finish().status, 0);  // asked to quit, and did
    EXPECT_EQ(status(home)["pid"], first.pid());

    // --toggle and --open go to the running instance and end at once.
    const auto toggled = runCLI({"--toggle"}, "", home, {}, offscreen, appPath);
    EXPECT_EQ(toggled.out, "{\"listening\":false}\n") << toggled.err;
    EXPECT_EQ(runCLI({"--open"}, "", home, {}, offscreen, appPath).status, 0);

    BackgroundCLI second({"--dry-run"}, home, offscreen, appPath);
    ASSERT_TRUE(second.waitUntilReady());
    EXPECT_EQ(first.finish().status, 0);
    EXPECT_EQ(status(home)["listening"], false);  // the switch is the user's, not the instance's

    BackgroundCLI headless({"run", "--dry-run"}, home);
    ASSERT_TRUE(headless.waitUntilReady());
    EXPECT_EQ(second.finish().status, 0);
    EXPECT_EQ(headless.finish(SIGTERM).status, 0);
    EXPECT_NE(runCLI({"--toggle"}, "", home, {}, offscreen, appPath).status, 0);
}

}  // namespace
}  // namespace ostrelle::app
