// Pictures of the window as a person sees it, written into docs/ for the README; each is also
// a check that the window renders with its texts in place.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTest>
#include <cmath>

#include "app/ostrelle_app.h"
#include "testing/scratch_home.h"

namespace ostrelle::app {
namespace {

const QString docs = QStringLiteral(OSTRELLE_SOURCE_DIR "/docs/");

// Three fingers drawing a slow circle for a minute, at the pad's 125 frames a second.
std::vector<RecordingEvent> drawing() {
    constexpr double frameInterval = 0.008;
    std::vector<RecordingEvent> events;
    for (int frame = 0; frame < 7500; ++frame) {
        const double t = frame * frameInterval;
        const double angle = t * 0.8;
        const double x = 0.5 + 0.18 * std::cos(angle);
        const double y = 0.5 + 0.25 * std::sin(angle);
        events.emplace_back(RecordedFrame{t, {{1, x - 0.08, y}, {2, x, y - 0.05}, {3, x + 0.08, y}}});
    }
    return events;
}

std::unique_ptr<OstrelleApp> startApp(EpollMainQueue& queue, const testing::ScratchHome& home) {
    AppOptions options;
    options.replay = drawing();
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

TEST(Screenshots, MainWindowEditorWhileRecordingAndSettings) {
    const testing::ScratchHome home;
    EpollMainQueue queue;
    const auto app = startApp(queue, home);
    MainWindow* opened = app->mainWindow();
    ASSERT_NE(opened, nullptr);
    MainWindow& window = *opened;
    window.bindingList().choose(app->context().store.bindings().front().id);
    save(window, QStringLiteral("main-window.png"));

    // The pad's frames come through the whole application: source, engine, live trace, preview.
    window.showEditor(std::nullopt);
    BindingEditor& editor = *window.editor();
    editor.setRecording(true);
    ASSERT_TRUE(QTest::qWaitFor([&] { return app->engine().liveTrace().contacts().size() == 3; }));
    // A second of drawing: long enough for the trails to show.
    ASSERT_TRUE(QTest::qWaitFor([&] {
        const auto& strokes = app->engine().liveTrace().strokes();
        return strokes.size() == 3 && strokes[0].size() > 40;
    }));
    save(window, QStringLiteral("editor-recording.png"));
    editor.setRecording(false);
    window.showSettings();
    save(window, QStringLiteral("settings.png"));
}

}  // namespace
}  // namespace ostrelle::app
