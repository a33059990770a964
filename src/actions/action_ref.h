#pragma once

#include <functional>
#include <optional>
#include <string>

#include "actions/key_shortcut.h"
#include "support/url.h"

namespace ostrelle {

// What a binding runs: an option of the action catalog by group and option id, plus the user's
// own shortcut or application where the option needs one. Resolved against the catalog each time.
struct ActionRef {
    std::string appID;
    std::string optionID;
    std::optional<KeyShortcut> shortcut;  // only for the "custom" option
    std::optional<URL> app;               // only for the "app" option

    friend bool operator==(const ActionRef&, const ActionRef&) = default;
};

std::size_t hashOf(const ActionRef& ref);

}  // namespace ostrelle

template <>
struct std::hash<ostrelle::ActionRef> {
    std::size_t operator()(const ostrelle::ActionRef& ref) const noexcept { return ostrelle::hashOf(ref); }
};
