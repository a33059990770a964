#include "actions/dry_run_system_port.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

using namespace recorded;

// Keys, the Dock and the beep are shown by the replay tests.
TEST(RecordedEventJSON, RendersAsOneObject) {
    const std::pair<RecordedEvent, const char*> rows[] = {
        {Mouse{MouseEventType::leftUp, {10.5, 20}, 0x100000},
         R"({"mouse":"leftUp","x":10.5,"y":20.0,"flags":1048576})"},
        {MediaKey{0xA00, 0x100A00}, R"({"media":16,"down":true,"data1":1051136,"flags":2560})"},
        {MediaKey{0xB00, 0x100B00}, R"({"media":16,"down":false,"data1":1051392,"flags":2816})"},
        {OpenApplication{"/Applications/X.app"}, R"({"open":"/Applications/X.app"})"},
        {Press{"tab", "AXPress"}, R"({"press":"tab","action":"AXPress"})"},
        {PasteboardSave{}, R"({"pasteboard":"save"})"},
        {PasteboardRestore{{{}, {}}}, R"({"pasteboard":"restore","items":2})"},
        {PasteboardSet{"https://a.b/"}, R"({"pasteboard":"set","string":"https://a.b/"})"},
        {Haptic{}, R"({"haptic":true})"},
    };
    for (const auto& [event, json] : rows) EXPECT_EQ(toJSON(event), nlohmann::json::parse(json)) << json;
}

TEST(DryRunSystemPort, CommandCCopiesOnlyWhenToldToAndOnlyOnKeyDown) {
    DryRunSystemPort system;
    system.events().postKey(8, true, EventFlag::command);
    system.copiesOnCommandC = "https://example.com/";
    system.events().postKey(8, true, 0);                    // plain C types a letter
    system.events().postKey(8, false, EventFlag::command);  // the release copies nothing more
    EXPECT_EQ(system.pasteboard().changeCount(), 0);
    system.events().postKey(8, true, EventFlag::command);
    EXPECT_EQ(system.pasteboard().changeCount(), 1);
    EXPECT_EQ(system.pasteboard().string(), "https://example.com/");
}

TEST(DryRunSystemPort, PasteboardWritesCountAndStringIsTheFirstPlainText) {
    DryRunSystemPort system;
    system.pasteboardItems = {{{"public.png", {1}}}, DryRunSystemPort::plainText("second")};
    Pasteboard& pasteboard = system.pasteboard();
    EXPECT_EQ(pasteboard.string(), "second");
    pasteboard.setString("one");
    pasteboard.restoreItems({});
    EXPECT_EQ(pasteboard.changeCount(), 2);
    EXPECT_EQ(pasteboard.string(), std::nullopt);
    EXPECT_TRUE(pasteboard.saveItems().empty());
}

TEST(DryRunSystemPort, AttributesOfAnotherTypeAreUnreadable) {
    DryRunSystemPort system;
    system.setFrontmost("com.example.app", FakeElement::make("window", "AXWindow"));
    Accessibility& accessibility = system.accessibility();
    const auto window =
        accessibility.elementAttribute(*accessibility.frontmostApplication(), "AXFocusedWindow");
    ASSERT_TRUE(window);
    EXPECT_EQ(accessibility.stringAttribute(*window, "AXRole"), "AXWindow");
    EXPECT_EQ(accessibility.elementListAttribute(*window, "AXRole"), std::nullopt);
    EXPECT_EQ(accessibility.elementAttribute(*window, "AXChildren"), std::nullopt);
}

}  // namespace
}  // namespace ostrelle
