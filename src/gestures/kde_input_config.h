#pragma once

#include <string_view>

namespace ostrelle {

// Whether KDE Plasma's input settings (the text of kcminputrc) turn tap to click on for a
// touchpad: a device group [Libinput][vendor][product][name] with TapToClick true. Anything
// else in the file, and any line that cannot be read, is ignored.
bool kdeTapToClick(std::string_view kcminputrc);

}  // namespace ostrelle
