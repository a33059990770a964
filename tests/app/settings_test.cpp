// The settings as the user changes them: the switch, the toggle shortcut with the engine's
// refusal shown under it, and haptics offered only where the platform has them.
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QLabel>
#include <QTest>

#include "app/settings_pane.h"
#include "engine/engine_fixture.h"

namespace ostrelle::app {
namespace {

class Settings : public testing::EngineFixture {
  protected:
    AppContext context(bool hasHaptics) {
        return AppContext{.engine = engine(),
                          .store = store,
                          .settings = settings,
                          .host = {},
                          .hasHaptics = hasHaptics,
                          .keysError = {},
                          .updater = nullptr};
    }
};

TEST_F(Settings, TheSwitchAndTheToggleShortcutReachTheEngineAndItsRefusalIsShown) {
    AppContext shared = context(false);
    SettingsPane pane(shared);
    const auto boxes = pane.findChildren<QCheckBox*>();
    const auto haptic = std::find_if(boxes.begin(), boxes.end(), [](const QCheckBox* box) {
        return box->accessibleName() == "Haptic feedback";
    });
    EXPECT_EQ(haptic, boxes.end()) << "no haptics on this platform, so no such setting";

    QCheckBox* active = pane.findChild<QCheckBox*>();
    ASSERT_TRUE(active->isChecked());
    active->click();
    EXPECT_FALSE(engine().isEnabled());

    // ⇧K is refused as a global shortcut; the engine's reason appears under the field.
    emit pane.toggleShortcut().edited(KeyShortcut{40, EventFlag::shift});
    EXPECT_TRUE(engine().toggleShortcutError().has_value());
    EXPECT_EQ(pane.toggleShortcut().error().toStdString(), *engine().toggleShortcutError());
    emit pane.toggleShortcut().edited(std::nullopt);
    EXPECT_TRUE(pane.toggleShortcut().error().isEmpty());
}

}  // namespace
}  // namespace ostrelle::app
