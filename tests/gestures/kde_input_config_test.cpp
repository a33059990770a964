#include "gestures/kde_input_config.h"

#include <gtest/gtest.h>

#include <string>

namespace ostrelle {
namespace {

// As KWin writes it: a mouse, a touchpad, and groups that are no device.
const std::string laptop = R"(# written by hand
[Keyboard]
NumLock=2

[Libinput][1133][49291][Logitech G502]
PointerAcceleration=0.2
LeftHanded=true

[Libinput][1267][12410][ELAN1200:00 04F3:3090 Touchpad]
NaturalScroll=true
TapToClick=TAPPING

[Mouse]
TapToClick=true

[Libinput][Touchpad]
TapToClick=true
)";

TEST(KdeInputConfig, TapToClickOfATouchpadGroup) {
    const struct {
        const char* name;
        std::string text;
        bool on;
    } rows[] = {
        {"nothing stored", "", false},
        {"on, as KWin writes it",
         "[Libinput][1739][52804][SYNA2B46:00 06CB:CE44 Touchpad]\nNaturalScroll=true\nTapToClick=true\n",
         true},
        {"off", "[Libinput][1739][52804][SYNA2B46:00 06CB:CE44 Touchpad]\nTapToClick=false\n", false},
        {"only device groups count, and values that are no boolean are off", laptop, false},
        {"any touchpad on is enough", laptop + "[Libinput][1][2][Second Touchpad]\nTapToClick = On \r\n",
         true},
        {"the last value in a group wins, also across repeated groups",
         "[Libinput][1][2][Pad]\nTapToClick=true\n[Other]\n[Libinput][1][2][Pad]\nTapToClick=false\n", false},
        {"spaces, carriage returns, options and numbers",
         "  [Libinput][1][2][Pad][$i]\r\n ; note\r\n  TapToClick[$i] =  1\r\n", true},
        {"a key of another name", "[Libinput][1][2][Pad]\nTapToClickX=true\nxTapToClick=true\n", false},
        {"keys before any group, or under a broken header, belong to no device",
         "TapToClick=true\n[Libinput][1][2][Pad\nTapToClick=true\n", false},
        {"commented out", "[Libinput][1][2][Pad]\n# TapToClick=true\n", false},
        {"a line without = is skipped", "[Libinput][1][2][Pad]\nTapToClick\nTapToClick=yes", true},
    };
    for (const auto& row : rows) EXPECT_EQ(kdeTapToClick(row.text), row.on) << row.name;
}

}  // namespace
}  // namespace ostrelle
