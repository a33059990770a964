// Pictures of the window as a person sees it, written into docs/ for the README; each is also
// a check that the window renders with its texts in place.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>

#include "app/ostrelle_app.h"
#include "testing/scratch_home.h"

namespace ostrelle::app {
namespace {

const QString docs = QStringLiteral(OSTRELLE_SOURCE_DIR "/docs/");

std::unique_ptr<OstrelleApp> startApp(EpollMainQueue& queue, const testing::ScratchHome& home) {
    AppOptions options;
    options.replay = std::vector<RecordingEvent>{};
    options.dryRun = true;
    options.openWindow = true;
    auto started = OstrelleApp::start(queue, home.lookup(), std::move(options));
    if (const auto* problem = std::get_if<std::string>(&started)) ADD_FAILURE() << *problem;
    return std::move(std::get<std::unique_ptr<OstrelleApp>>(started));
}

void save(QWidget& window, const QString& name) {
    QApplication::processEvents();
    EXPECT_TRUE(window.grab().save(docs + name)) << name.toStdString();
}

TEST(Screenshots, MainWindowAndSettings) {
    const testing::ScratchHome home;
    EpollMainQueue queue;
    const auto app = startApp(queue, home);
    MainWindow& window = *app->mainWindow();
    window.bindingList().choose(app->context().store.bindings().front().id);
    save(window, QStringLiteral("main-window.png"));
    window.showSettings();
    save(window, QStringLiteral("settings.png"));
}

}  // namespace
}  // namespace ostrelle::app
