// "Duplicate tab": copy the front tab's address through the pasteboard and paste it into a new
// tab, a few steps apart so that the browser keeps up, then give the user's pasteboard back.
#include <memory>
#include <string_view>

#include "actions/action_runner.h"
#include "actions/action_steps.h"
#include "support/log.h"

namespace ostrelle {

using action_steps::after;
using action_steps::press;

namespace {

constexpr std::string_view nothingCopiedText =
    "duplicate tab failed: ⌘L ⌘C didn't copy an address (is a browser in front?)";

// Virtual key codes (the macOS numbering).
constexpr std::int64_t lKey = 37;       // ⌘L focuses the address field
constexpr std::int64_t cKey = 8;        // ⌘C copies it
constexpr std::int64_t escapeKey = 53;  // leaves the address field as it was
constexpr std::int64_t tKey = 17;       // ⌘T opens the new tab
constexpr std::int64_t vKey = 9;        // ⌘V pastes the address
constexpr std::int64_t returnKey = 36;  // loads it

// What one run of the action keeps alive across its steps; a second run has its own.
struct DuplicateTabChain {
    std::vector<PasteboardItem> saved;
    std::int64_t changeCount = 0;
    std::string address;
};

}  // namespace

void ActionRunner::duplicateTab() {
    auto chain = std::make_shared<DuplicateTabChain>();
    chain->saved = system_.pasteboard().saveItems();
    chain->changeCount = system_.pasteboard().changeCount();
    press(system_, lKey, EventFlag::command);
    press(system_, cKey, EventFlag::command);

    // The steps hold the port and the queue, not the runner, which may be gone by then.
    SystemPort& system = system_;
    MainQueue& queue = queue_;
    after(queue, stepDelay, [&system, &queue, chain] {
        Pasteboard& pasteboard = system.pasteboard();
        std::optional<std::string> copied;
        if (pasteboard.changeCount() != chain->changeCount) copied = pasteboard.string();
        if (!copied || copied->empty()) {
            Log::error(nothingCopiedText);
            action_steps::restore(system, chain->saved);
            system.feedback().beep();
            return;
        }
        chain->address = std::move(*copied);
        press(system, escapeKey, 0);
        press(system, tKey, EventFlag::command);
        after(queue, newTabDelay, [&system, &queue, chain] {
            system.pasteboard().setString(chain->address);
            press(system, vKey, EventFlag::command);
            after(queue, stepDelay, [&system, &queue, chain] {
                press(system, returnKey, 0);
                after(queue, stepDelay, [&system, chain] { action_steps::restore(system, chain->saved); });
            });
        });
    });
}

}  // namespace ostrelle
