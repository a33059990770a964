#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "actions/key_shortcut.h"

namespace ostrelle::cli {

// A shortcut typed as "KEY:MODS": a virtual key code 0…127, then a comma list of control,
// option, shift and command in any order ("17:control,command"); "KEY" or "KEY:" alone is the
// bare key. An empty item inside the list ("17:control,,command") is refused.
struct ShortcutArgument {
    std::optional<KeyShortcut> shortcut;
    std::string problem;  // why the text is not a shortcut, when it is not
};

ShortcutArgument parseShortcutArgument(std::string_view text);

}  // namespace ostrelle::cli
