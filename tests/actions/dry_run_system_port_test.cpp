#include "actions/dry_run_system_port.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

struct JSONCase {
    const char* name;
    RecordedEvent event;
    const char* json;

    friend void PrintTo(const JSONCase& row, std::ostream* out) { *out << row.name; }
};

class RecordedEventJSON : public ::testing::TestWithParam<JSONCase> {};

TEST_P(RecordedEventJSON, RendersAsOneObject) {
    EXPECT_EQ(toJSON(GetParam().event), nlohmann::json::parse(GetParam().json));
}

using namespace recorded;

INSTANTIATE_TEST_SUITE_P(
    Kinds, RecordedEventJSON,
    ::testing::Values(
        JSONCase{"keyDown", Key{124, true, 0xB00000}, R"({"key":124,"down":true,"flags":11534336})"},
        JSONCase{"keyUp", Key{55, false, 0}, R"({"key":55,"down":false,"flags":0})"},
        JSONCase{"mouse", Mouse{MouseEventType::leftUp, {10.5, 20}, 0x100000},
                 R"({"mouse":"leftUp","x":10.5,"y":20.0,"flags":1048576})"},
        JSONCase{"mediaDown", MediaKey{0xA00, 0x100A00},
                 R"({"media":16,"down":true,"data1":1051136,"flags":2560})"},
        JSONCase{"mediaUp", MediaKey{0xB00, 0x100B00},
                 R"({"media":16,"down":false,"data1":1051392,"flags":2816})"},
        JSONCase{"open", OpenApplication{"/Applications/X.app"}, R"({"open":"/Applications/X.app"})"},
        JSONCase{"dock", DockNotification{"com.apple.expose.front.awake"},
                 R"({"dock":"com.apple.expose.front.awake"})"},
        JSONCase{"press", Press{"tab", "AXPress"}, R"({"press":"tab","action":"AXPress"})"},
        JSONCase{"save", PasteboardSave{}, R"({"pasteboard":"save"})"},
        JSONCase{"restore", PasteboardRestore{{{}, {}}}, R"({"pasteboard":"restore","items":2})"},
        JSONCase{"set", PasteboardSet{"https://a.b/"}, R"({"pasteboard":"set","string":"https://a.b/"})"},
        JSONCase{"beep", Beep{}, R"({"beep":true})"}, JSONCase{"haptic", Haptic{}, R"({"haptic":true})"}),
    [](const auto& row) { return std::string(row.param.name); });

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
    EXPECT_EQ(accessibility.runningApplication("com.example.app"), std::nullopt);
}

}  // namespace
}  // namespace ostrelle
