// "Duplicate tab", step by step on the virtual clock: the address goes through the pasteboard,
// and the user's own pasteboard comes back whatever happens.
#include <gtest/gtest.h>

#include "action_runner_fixture.h"

namespace ostrelle::testing {
namespace {

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

    // The user's own copy: two items, one of them with two representations, plain text first.
    const std::vector<PasteboardItem> userItems{
        {{"public.utf8-plain-text", {'h', 'i'}}, {"public.html", {'<', 'b', '>'}}},
        {{"public.png", {0x89, 0x50, 0x4E, 0x47}}}};

    // Nothing new happens until just before `due`; just after it, exactly `expected` does.
    void expectStep(double due, const std::vector<RecordedEvent>& expected) {
        const std::size_t seen = events().size();
        queue.advanceTo(due - margin);
        EXPECT_EQ(events().size(), seen) << "before " << due;
        queue.advanceTo(due + margin);
        EXPECT_EQ(
            std::vector<RecordedEvent>(events().begin() + static_cast<std::ptrdiff_t>(seen), events().end()),
            expected)
            << "at " << due;
    }
};

TEST_F(DuplicateTabTest, InABrowserPastesTheAddressIntoANewTabAndGivesThePasteboardBack) {
    system.copiesOnCommandC = address;
    run("browsers", "duplicate");
    EXPECT_EQ(events(), std::vector<RecordedEvent>{recorded::PasteboardSave{}} + pressed(37, command) +
                            pressed(8, command));
    expectStep(0.12, pressed(53, 0) + pressed(17, command));
    expectStep(0.42, std::vector<RecordedEvent>{recorded::PasteboardSet{address}} + pressed(9, command));
    expectStep(0.54, pressed(36, 0));
    EXPECT_EQ(system.pasteboardItems, std::vector<PasteboardItem>{DryRunSystemPort::plainText(address)});
    expectStep(0.66, {recorded::PasteboardRestore{userItems}});
    EXPECT_EQ(system.pasteboardItems, userItems);
    EXPECT_EQ(queue.pendingCount(), 0u);
    EXPECT_TRUE(errors().empty());
}

// Where copy does nothing (the user's items hold plain text, but nothing changed them) or copies an
// empty text, there is no address: restore and beep after one step.
TEST_F(DuplicateTabTest, WithoutACopiedAddressRestoresAndBeepsAfterOneStep) {
    for (const std::optional<std::string>& copied :
         {std::optional<std::string>{}, std::optional<std::string>{""}}) {
        system.clearRecorded();
        system.copiesOnCommandC = copied;
        run("browsers", "duplicate");
        expectStep(queue.now() + 0.12, {recorded::PasteboardRestore{userItems}, beep});
        EXPECT_EQ(system.pasteboardItems, userItems);
        EXPECT_EQ(queue.pendingCount(), 0u);
    }
    EXPECT_EQ(errors(), std::vector<std::string>(2, nothingCopiedText));
}

TEST_F(DuplicateTabTest, AnEmptyPasteboardComesBackEmptyEvenAfterTheRunnerIsGone) {
    system.pasteboardItems.clear();
    system.copiesOnCommandC = address;
    {
        ActionRunner shortLived(system, queue, ActionHost{});
        shortLived.run(actionRef("browsers", "duplicate"));
    }
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
    const std::vector<RecordedEvent> expected{
        recorded::PasteboardSave{},
        recorded::PasteboardSave{},
        recorded::PasteboardSet{address},
        recorded::PasteboardSet{other},
        recorded::PasteboardRestore{userItems},
        recorded::PasteboardRestore{{DryRunSystemPort::plainText(address)}}};
    std::vector<RecordedEvent> pasteboard = events();
    std::erase_if(pasteboard,
                  [](const RecordedEvent& e) { return std::holds_alternative<recorded::Key>(e); });
    EXPECT_EQ(pasteboard, expected);
    EXPECT_DOUBLE_EQ(queue.now(), 0.2 + 0.66);
    EXPECT_TRUE(errors().empty());
}

}  // namespace
}  // namespace ostrelle::testing
