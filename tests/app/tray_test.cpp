// The status icon in a real tray (trayer on a private X server); skipped where there is no tray.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "app/ostrelle_app.h"
#include "app/status_icon.h"
#include "app/tray_menu.h"
#include "testing/scratch_home.h"

namespace ostrelle::app {
namespace {

TEST(Tray, TheIconSaysWhetherGesturesAreOnAndTheWindowWaitsToBeOpened) {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) GTEST_SKIP() << "no tray here; ctest runs this with one";
    const testing::ScratchHome home;
    EpollMainQueue queue;
    AppOptions options;
    options.replay = std::vector<RecordingEvent>{};
    options.dryRun = true;
    const EnvironmentLookup scratch = home.lookup();
    auto started = OstrelleApp::start(
        queue,
        [&scratch](std::string_view name) -> std::optional<std::string> {
            if (name == "DISPLAY") return qEnvironmentVariable("DISPLAY").toStdString();
            return scratch(name);
        },
        std::move(options));
    ASSERT_TRUE(std::holds_alternative<std::unique_ptr<OstrelleApp>>(started));
    OstrelleApp& app = *std::get<std::unique_ptr<OstrelleApp>>(started);

    ASSERT_NE(app.trayIcon(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor([&app] { return app.trayIcon()->isVisible(); }));
    EXPECT_EQ(app.trayIcon()->toolTip(), activeIconName);
    EXPECT_EQ(app.mainWindow(), nullptr);  // with a tray, the window opens only when asked

    app.trayMenu()->activeAction()->trigger();
    EXPECT_EQ(app.trayIcon()->toolTip(), pausedIconName);
    app.trayMenu()->openAction()->trigger();
    const MainWindow* window = app.mainWindow();
    ASSERT_NE(window, nullptr);
    EXPECT_TRUE(window->isVisible());
}

}  // namespace
}  // namespace ostrelle::app
