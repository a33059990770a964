// The bindings file's printing style, byte for byte.
#include "store/json_writer.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

using nlohmann::json;

TEST(BindingsStyleJSON, NestedArraysPutEachNumberOnItsOwnLine) {
    const json shortcut = {{"key", 17}, {"modifiers", {"control", "command"}}};
    EXPECT_EQ(writeBindingsStyleJSON(json::array({json::array({0.1, -0.5})})),
              "[\n  [\n    0.1,\n    -0.5\n  ]\n]");
    EXPECT_EQ(writeBindingsStyleJSON(shortcut),
              "{\n  \"key\" : 17,\n  \"modifiers\" : [\n    \"control\",\n    \"command\"\n  ]\n}");
}

TEST(BindingsStyleJSON, EmptyContainers) {
    EXPECT_EQ(writeBindingsStyleJSON(json::array()), "[\n\n]");
    EXPECT_EQ(writeBindingsStyleJSON(json{{"modifiers", json::array()}}), "{\n  \"modifiers\" : [\n\n  ]\n}");
}

TEST(BindingsStyleJSON, NumbersAreShortestRoundTrip) {
    EXPECT_EQ(writeBindingsStyleJSON(json(753300100.5)), "753300100.5");
    EXPECT_EQ(writeBindingsStyleJSON(json(0.1 + 0.2)), "0.30000000000000004");
    EXPECT_EQ(writeBindingsStyleJSON(json(2.0)), "2");
    EXPECT_EQ(writeBindingsStyleJSON(json(-0.0)), "0");
    EXPECT_EQ(writeBindingsStyleJSON(json(0.001)), "0.001");
    EXPECT_EQ(writeBindingsStyleJSON(json(-3)), "-3");
    EXPECT_EQ(writeBindingsStyleJSON(json(-9223372036854775807LL - 1)), "-9223372036854775808");
    EXPECT_EQ(writeBindingsStyleJSON(json(18446744073709551615ULL)), "18446744073709551615");
    // Plain notation for everyday magnitudes, exponents only far out.
    EXPECT_EQ(writeBindingsStyleJSON(json(100000.0)), "100000");
    EXPECT_EQ(writeBindingsStyleJSON(json(0.0001)), "0.0001");
    EXPECT_EQ(writeBindingsStyleJSON(json(1e16)), "1e+16");
    EXPECT_EQ(writeBindingsStyleJSON(json(1e-7)), "1e-07");
    EXPECT_EQ(writeBindingsStyleJSON(json(-2.2250738585072014e-308)), "-2.2250738585072014e-308");
}

TEST(BindingsStyleJSON, GrowsPastWhatWasReserved) {
    BindingsStyleWriter writer;
    writer.reserve(4);
    writer.beginArray();
    std::string expected = "[";
    for (int i = 0; i < 1000; ++i) {
        writer.number(i + 0.5);
        expected += (i == 0 ? "\n  " : ",\n  ") + std::to_string(i) + ".5";
    }
    writer.endArray();
    EXPECT_EQ(writer.take(), expected + "\n]");
}

TEST(BindingsStyleJSON, StringsEscapeSlashesQuotesAndControls) {
    EXPECT_EQ(writeBindingsStyleJSON(json("file:///Applications/Preview.app/")),
              "\"file:\\/\\/\\/Applications\\/Preview.app\\/\"");
    EXPECT_EQ(writeBindingsStyleJSON(json("a\"b\\c\nd\x01")), "\"a\\\"b\\\\c\\nd\\u0001\"");
    EXPECT_EQ(writeBindingsStyleJSON(json("Zürich ⌘")), "\"Zürich ⌘\"");
    EXPECT_EQ(writeBindingsStyleJSON(json("\x1f"
                                          "ab/"
                                          "\x7f")),
              "\"\\u001fab\\/\x7f\"");
    // Whatever is printed reads back to the same value.
    const json tricky = {{"s", "\\/\"\t"}, {"n", 1e-7}, {"a", {true, false, nullptr}}};
    EXPECT_EQ(json::parse(writeBindingsStyleJSON(tricky)), tricky);
}

}  // namespace
}  // namespace ostrelle
