#include "cli/shortcut_argument.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace ostrelle::cli {
namespace {

// The bindings file keeps key codes in seven bits; the command line takes no more than it can store.
constexpr std::int64_t maxKeyCode = 127;
constexpr std::string_view useHint = " (use control, option, shift, command)";

ShortcutArgument failure(std::string problem) {
    return {std::nullopt, std::move(problem)};
}

std::optional<std::int64_t> keyCode(std::string_view text) {
    std::int64_t key = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), key);
    if (text.empty() || error != std::errc() || end != text.data() + text.size()) return std::nullopt;
    if (key < 0 || key > maxKeyCode) return std::nullopt;
    return key;
}

const KeyModifier* modifierNamed(std::string_view name) {
    const auto& table = KeyShortcut::modifiers();
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const KeyModifier& modifier) { return modifier.name == name; });
    return found == table.end() ? nullptr : &*found;
}

}  // namespace

ShortcutArgument parseShortcutArgument(std::string_view text) {
    const auto colon = text.find(':');
    const std::string_view keyText = text.substr(0, colon);
    const auto key = keyCode(keyText);
    if (!key)
        return failure(
            fmt::format("--shortcut: key code \"{}\" is not a number from 0 to {}", keyText, maxKeyCode));

    KeyShortcut shortcut{*key, 0};
    // "KEY:" with nothing after the colon is the bare key too, as a script that joins an empty
    // list of modifiers writes it.
    if (colon == std::string_view::npos || colon + 1 == text.size()) return {shortcut, {}};
    const std::string_view list = text.substr(colon + 1);
    std::string_view rest = list;
    while (true) {
        const auto comma = rest.find(',');
        const std::string_view name = rest.substr(0, comma);
        // Within a list an empty item is more likely a lost name than a wish for none.
        if (name.empty())
            return failure(fmt::format("--shortcut: empty item in modifier list \"{}\"{}", list, useHint));
        const KeyModifier* modifier = modifierNamed(name);
        if (!modifier) return failure(fmt::format("--shortcut: unknown modifier \"{}\"{}", name, useHint));
        shortcut.flags |= modifier->flag;
        if (comma == std::string_view::npos) break;
        rest = rest.substr(comma + 1);
    }
    return {shortcut, {}};
}

}  // namespace ostrelle::cli
