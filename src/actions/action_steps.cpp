#include "actions/action_steps.h"

#include <fmt/format.h>

#include <array>
#include <limits>

#include "actions/key_shortcut.h"
#include "actions/linux_key_codes.h"
#include "support/contract.h"
#include "support/log.h"

namespace ostrelle::action_steps {
namespace {

struct ModifierKey {
    LinuxChord::Modifier modifier;
    std::uint16_t key;
};

// The order in which a chord's modifiers go down.
constexpr std::array modifierKeys{
    ModifierKey{LinuxChord::ctrl, linux_key::leftCtrl},
    ModifierKey{LinuxChord::alt, linux_key::leftAlt},
    ModifierKey{LinuxChord::shift, linux_key::leftShift},
    ModifierKey{LinuxChord::super, linux_key::leftMeta},
};

std::uint16_t checkedKeyCode(std::int64_t key) {
    if (key < 0 || key > std::numeric_limits<std::uint16_t>::max()) {
        const std::string what = fmt::format("key code {} outside 0...65535 given to the action runner", key);
        contractViolation(what.c_str());
    }
    return static_cast<std::uint16_t>(key);
}

}  // namespace

void press(SystemPort& system, std::int64_t key, EventFlags flags) {
    const std::uint16_t code = checkedKeyCode(key);
    const EventFlags eventFlags = KeyShortcut{key, flags}.eventFlags();
    EventOutput& events = system.events();
    events.postKey(code, true, eventFlags);
    events.postKey(code, false, eventFlags);
}

void press(KeyCodeOutput& output, const LinuxChord& chord) {
    for (const ModifierKey& held : modifierKeys) {
        if ((chord.modifiers & held.modifier) != 0) output.postKeyCode(held.key, true);
    }
    output.postKeyCode(chord.key, true);
    output.postKeyCode(chord.key, false);
    for (auto held = modifierKeys.rbegin(); held != modifierKeys.rend(); ++held) {
        if ((chord.modifiers & held->modifier) != 0) output.postKeyCode(held->key, false);
    }
}

void post(SystemPort& system, std::int64_t key, bool down, EventFlags flags) {
    system.events().postKey(checkedKeyCode(key), down, flags);
}

void restore(SystemPort& system, const std::vector<PasteboardItem>& saved) {
    system.pasteboard().restoreItems(saved);
}

void after(MainQueue& queue, double delay, MainQueue::Task work) {
    queue.postAfter(delay, std::move(work));
}

void fail(SystemPort& system, std::string_view message) {
    Log::error(message);
    system.feedback().beep();
}

}  // namespace ostrelle::action_steps
