#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "action_fakes.h"
#include "actions/action_runner.h"
#include "actions/dry_run_system_port.h"
#include "support/log.h"
#include "support/virtual_clock_queue.h"

namespace ostrelle::testing {

inline ActionRef actionRef(std::string appID, std::string optionID,
                           std::optional<KeyShortcut> shortcut = std::nullopt) {
    return {std::move(appID), std::move(optionID), shortcut, std::nullopt};
}

// A key-down and key-up pair.
inline std::vector<RecordedEvent> pressed(std::uint16_t key, EventFlags flags) {
    return {recorded::Key{key, true, flags}, recorded::Key{key, false, flags}};
}

// One list of expected events after another.
inline std::vector<RecordedEvent> operator+(std::vector<RecordedEvent> first,
                                            const std::vector<RecordedEvent>& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

inline const RecordedEvent beep = recorded::Beep{};

// A runner over a dry-run system and a virtual-clock queue, with every logged error kept in order.
class ActionRunnerTest : public ::testing::Test {
  protected:
    ActionRunnerTest() {
        Log::setListener([this](Log::Level level, std::string_view message) {
            if (level == Log::Level::error) errors_.emplace_back(message);
        });
    }
    ~ActionRunnerTest() override { Log::setListener(nullptr); }

    void run(const ActionRef& ref) { runner.run(ref); }
    void run(std::string appID, std::string optionID) {
        runner.run(actionRef(std::move(appID), std::move(optionID)));
    }

    const std::vector<std::string>& errors() const { return errors_; }
    const std::vector<RecordedEvent>& events() const { return system.recorded(); }

    DryRunSystemPort system;
    VirtualClockQueue queue;
    FakeAppFiles apps;  // a made-up disk, empty until a test adds bundles
    ActionRunner runner{system, queue, ActionHost{nullptr, &apps, std::nullopt}};

  private:
    std::vector<std::string> errors_;
};

}  // namespace ostrelle::testing
