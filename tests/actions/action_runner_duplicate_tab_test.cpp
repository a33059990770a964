// "Duplicate tab", step by step on the virtual clock: the address goes through the pasteboard,
// and the user's own pasteboard comes back whatever happens.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"

namespace ostrelle {
namespace {

using testing::ActionRunnerTest;
using testing::beep;
using testing::pressed;
using testing::operator+;

constexpr EventFlags command = EventFlag::command;
const std::string nothingCopiedText =
    "duplicate tab failed: ⌘L ⌘C didn't copy an address (is a browser in front?)";
const std::string address = "https://example.com/a?b=c";

// Margin around a step's due time, in seconds: well below the 0.12 s between steps.
constexpr double margin = 0.005;

class DuplicateTabTest : public ActionRunnerTest {
  protected:
    DuplicateTabTest() {
        system.setFrontmost("com.apple.Safari");
        system.pasteboardItems = userItems;
        system.pasteboardChangeCount = 41;
    }

    // The user's own copy: two items, one of them with two representations.
    const std::vector<PasteboardItem> userItems{
        {{"public.utf8-plain-text", {'h', 'i'}}, {"public.html", {'<', 'b', '>'}}},
        {{"public.png", {0x89, 0x50, 0x4E, 0x47}}}};

    // The events from the given index on.
    std::vector<RecordedEvent> eventsFrom(std::size_t index) const {
        const auto& all = events();
        return {all.begin() + static_cast<std::ptrdiff_t>(std::min(index, all.size())), all.end()};
    }
};

TEST_F(DuplicateTabTest, InABrowserPastesTheAddressIntoANewTabAndGivesThePasteboardBack) {
    system.copiesOnCommandC = address;
    run("browsers", "duplicate");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{recorded::PasteboardSave{}} + pressed(37, command) +
                            pressed(8, command));

    std::size_t seen = events().size();
    queue.advanceTo(0.12 - margin);
    EXPECT_EQ(events().size(), seen);
    queue.advanceTo(0.12 + margin);
    EXPECT_EQ(eventsFrom(seen), pressed(53, 0) + pressed(17, command));

    seen = events().size();
    queue.advanceTo(0.42 - margin);
    EXPECT_EQ(events().size(), seen);
    queue.advanceTo(0.42 + margin);
    EXPECT_EQ(eventsFrom(seen),
              std::vector<RecordedEvent>{recorded::PasteboardSet{address}} + pressed(9, command));

    seen = events().size();
    queue.advanceTo(0.54 + margin);
    EXPECT_EQ(eventsFrom(seen), pressed(36, 0));

    seen = events().size();
    queue.advanceTo(0.66 - margin);
    EXPECT_EQ(events().size(), seen);
    EXPECT_EQ(system.pasteboardItems, std::vector<PasteboardItem>{DryRunSystemPort::plainText(address)});
    queue.advanceTo(0.66 + margin);
    EXPECT_EQ(eventsFrom(seen), std::vector<RecordedEvent>{recorded::PasteboardRestore{userItems}});
    EXPECT_EQ(system.pasteboardItems, userItems);

    EXPECT_EQ(queue.pendingCount(), 0u);
    EXPECT_TRUE(errors().empty());
}

TEST_F(DuplicateTabTest, WhereCopyDoesNothingRestoresAndBeepsAfterOneStep) {
    system.setFrontmost("com.apple.Preview");
    run("browsers", "duplicate");
    const std::size_t seen = events().size();
    queue.advanceTo(0.12 - margin);
    EXPECT_TRUE(errors().empty());
    queue.advanceTo(0.12 + margin);
    EXPECT_EQ(errors(), std::vector<std::string>{nothingCopiedText});
    EXPECT_EQ(eventsFrom(seen), (std::vector<RecordedEvent>{recorded::PasteboardRestore{userItems}, beep}));
    EXPECT_EQ(system.pasteboardItems, userItems);
    EXPECT_EQ(queue.pendingCount(), 0u);
}

TEST_F(DuplicateTabTest, AnEmptyCopyIsNoAddress) {
    system.copiesOnCommandC = "";
    run("browsers", "duplicate");
    queue.runAll();
    EXPECT_EQ(errors(), std::vector<std::string>{nothingCopiedText});
    EXPECT_EQ(events().back(), beep);
    EXPECT_EQ(system.pasteboardItems, userItems);
}

TEST_F(DuplicateTabTest, TextAlreadyOnThePasteboardIsNotACopy) {
    // The user's item holds plain text, but nothing changed it: the address field wasn't copied.
    run("browsers", "duplicate");
    queue.runAll();
    EXPECT_EQ(errors(), std::vector<std::string>{nothingCopiedText});
}

TEST_F(DuplicateTabTest, AnEmptyPasteboardComesBackEmpty) {
    system.pasteboardItems.clear();
    system.copiesOnCommandC = address;
    run("browsers", "duplicate");
    queue.runAll();
    EXPECT_EQ(events().back(), RecordedEvent{recorded::PasteboardRestore{}});
    EXPECT_TRUE(system.pasteboardItems.empty());
}

TEST_F(DuplicateTabTest, TwoOverlappingRunsEachFinishTheirOwnChain) {
    system.copiesOnCommandC = address;
    run("browsers", "duplicate");
    queue.advanceTo(0.2);
    // The second starts while the first waits for its new tab; by now the pasteboard holds the
    // first address, so that is what the second saves and gives back.
    const std::string other = "https://example.org/other";
    system.copiesOnCommandC = other;
    run("browsers", "duplicate");
    queue.runAll();

    std::vector<RecordedEvent> pasteboardEvents;
    for (const RecordedEvent& event : events()) {
        if (!std::holds_alternative<recorded::Key>(event)) pasteboardEvents.push_back(event);
    }
    const std::vector<RecordedEvent> expected{
        recorded::PasteboardSave{},
        recorded::PasteboardSave{},
        recorded::PasteboardSet{address},
        recorded::PasteboardSet{other},
        recorded::PasteboardRestore{userItems},
        recorded::PasteboardRestore{{DryRunSystemPort::plainText(address)}}};
    EXPECT_EQ(pasteboardEvents, expected);
    EXPECT_DOUBLE_EQ(queue.now(), 0.2 + 0.66);
    EXPECT_TRUE(errors().empty());
}

TEST_F(DuplicateTabTest, StepsStillRunAfterTheRunnerIsGone) {
    system.copiesOnCommandC = address;
    {
        ActionRunner shortLived(system, queue, ActionHost{});
        shortLived.run(testing::actionRef("browsers", "duplicate"));
    }
    queue.runAll();
    EXPECT_EQ(events().back(), RecordedEvent{recorded::PasteboardRestore{userItems}});
}

}  // namespace
}  // namespace ostrelle
