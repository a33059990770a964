#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "actions/event_flags.h"
#include "actions/linux_chord.h"
#include "actions/system_port.h"
#include "support/main_queue.h"

// The small effects the runner's actions are made of, shared by its files.
namespace ostrelle::action_steps {

// One key-down and key-up pair carrying the shortcut's event flags, with no pause between them.
// A key code outside 0…65535 is a programming error.
void press(SystemPort& system, std::int64_t key, EventFlags flags);
// One lone key event with exactly these flags: a modifier held down around a press.
void post(SystemPort& system, std::int64_t key, bool down, EventFlags flags);
// A Linux chord: its modifiers held in their fixed order, the key pressed, the modifiers let go in
// the reverse order.
void press(KeyCodeOutput& output, const LinuxChord& chord);
// Clears the pasteboard and puts the saved items back.
void restore(SystemPort& system, const std::vector<PasteboardItem>& saved);
// Runs the work on the main queue once the delay (seconds) has passed.
void after(MainQueue& queue, double delay, MainQueue::Task work);
// Every failure the user should know of: one log line, then the alert sound.
void fail(SystemPort& system, std::string_view message);

}  // namespace ostrelle::action_steps
