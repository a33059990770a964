#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "actions/action_catalog.h"
#include "actions/action_host.h"
#include "actions/action_kind.h"
#include "actions/action_ref.h"
#include "actions/event_flags.h"
#include "actions/key_shortcut.h"
#include "actions/system_port.h"
#include "support/main_queue.h"

namespace ostrelle {

// Performs the action a gesture is bound to: resolves the reference against the catalog and
// turns its kind into synthesized keys, clicks, accessibility presses, Dock notifications and
// opened applications. Failures are logged and beeped, never handed back. Main thread only.
class ActionRunner {
  public:
    static constexpr double stepDelay = 0.12;   // seconds between the steps of "duplicate tab"
    static constexpr double newTabDelay = 0.3;  // seconds for a new tab to open in "duplicate tab"

    // Editors whose tab switching is ⌥⌘→/← rather than ⌃⇥.
    static const std::set<std::string, std::less<>>& vsCodeIDs();
    // Browsers whose private window is ⇧⌘P rather than ⇧⌘N.
    static const std::set<std::string, std::less<>>& firefoxIDs();

    // System and queue must outlive every step the runner schedules on the queue.
    ActionRunner(SystemPort& system, MainQueue& queue, const ActionHost& host)
        : system_(system), queue_(queue), host_(host) {}

    void run(const ActionRef& action);

    // A catalog shortcut as the front application (by bundle id) needs it: some apps give the
    // common shortcut another meaning and do the job under another one.
    static KeyShortcut remapped(const KeyShortcut& shortcut, const std::optional<std::string>& frontmostID);

  private:
    // Linux desktops take chords of their own (the Linux actions table) instead of macOS events.
    void runOnLinux(const ActionRef& action, const ActionCatalog::Entry& entry);
    void switchWith(std::int64_t key, bool reverse);
    void switchSpace(bool left);
    void selectTab(bool last);
    void duplicateTab();
    void commandClick();
    void mediaKey(std::int32_t code);
    void pressMenuExtra(const std::vector<std::string>& ids);

    struct Dispatch;

    SystemPort& system_;
    MainQueue& queue_;
    ActionHost host_;
};

}  // namespace ostrelle
