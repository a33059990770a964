// The fast reader must never disagree with the full one: it either gives up or reads exactly
// what the full reader reads. It must also not give up on the files the store itself writes.
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

#include "store/binding_json.h"
#include "store/bindings_file.h"
#include "store/bindings_quick_reader.h"

namespace ostrelle {
namespace {

std::vector<GestureBinding> sampleBindings() {
    GestureBinding drawn{"5D1E2F30-6A7B-4C8D-9E0F-1A2B3C4D5E6F", Gesture("3.custom.9B2E6F10-44A7-4C1D-8E3B-5F6A7B8C9D0E"),
                         ActionRef{"keyboard", "custom", KeyShortcut{17, EventFlag::control | EventFlag::command}, {}},
                         753300100.5};
    drawn.gesture.custom =
        CustomShape("Zig \"ß\" \\/", 3, {{0.1, 0.2}, {-0.0, 1e-7}, {1, 0.30000000000000004}}, {{{-0.5, 1}, {2, 3}}, {}});
    return {
        {"0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", Gesture("2.restTap.left"), ActionRef{"browsers", "back", {}, {}}, 0.25},
        drawn,
        {"7A8B9C0D-1E2F-4A3B-8C4D-5E6F7A8B9C0D", Gesture("4.tap"),
         ActionRef{"openapps", "app", {}, URL::parse("file:///Applications/Preview.app/")}, -3},
    };
}

TEST(BindingsQuickReader, ReadsWhatTheStoreWrites) {
    const std::vector<GestureBinding> bindings = sampleBindings();
    const auto quick = readPlainBindingsFile(encodeBindingsFile(bindings));
    ASSERT_TRUE(quick.has_value());
    EXPECT_EQ(*quick, bindings);
    EXPECT_EQ(readPlainBindingsFile(encodeBindingsFile({})), std::vector<GestureBinding>{});
}

// The full reader's verdict on a file: its bindings, or nothing when it refuses the file.
std::optional<std::vector<GestureBinding>> fullReading(const std::string& text) {
    try {
        return decodeBindingsTree(text);
    } catch (const BindingsFileError&) {
        return std::nullopt;
    }
}

const std::string id = R"("id": "0e4a5c3b-7d2f-4b8e-9a61-3c5d7e9f1a2b")";
const std::string action = R"("action": {"appID": "browsers", "optionID": "back"})";
const std::string shape = R"({"name": "Z", "fingers": 3, "path": [[0, 1]], "strokes": [[[0.5, -2]]]})";

std::string bindingFile(const std::string& members) { return "[{" + id + ", " + action + ", " + members + "}]"; }

enum class Quick { reads, givesUp, either };

struct Agreement {
    const char* name;
    std::string text;
    Quick quick;
};

class BindingsQuickReaderAgreement : public ::testing::TestWithParam<Agreement> {};

TEST_P(BindingsQuickReaderAgreement, NeverReadsOtherwiseThanTheFullReader) {
    const auto quick = readPlainBindingsFile(GetParam().text);
    const auto full = fullReading(GetParam().text);
    if (quick) {
        ASSERT_TRUE(full.has_value()) << "the full reader refuses what the quick one read";
        EXPECT_EQ(*quick, *full);
    }
    switch (GetParam().quick) {
        case Quick::reads: EXPECT_TRUE(quick.has_value()); break;
        case Quick::givesUp: EXPECT_FALSE(quick.has_value()); break;
        case Quick::either: break;
    }
}

INSTANTIATE_TEST_SUITE_P(
    BindingsFile, BindingsQuickReaderAgreement,
    ::testing::Values(
        // Forms the quick reader takes itself.
        Agreement{"LowerCaseIdAndIntegerDate", bindingFile(R"("gesture": "3.tap", "createdAt": 7)"), Quick::reads},
        Agreement{"Shape", bindingFile(R"("gesture": {"id": "3.custom.X", "custom": )" + shape + R"(}, "createdAt": 1)"),
                  Quick::reads},
        Agreement{"LegacyGestureWithoutShape",
                  bindingFile(R"("gesture": {"fingers": 4, "motion": "swipe", "direction": "up"}, "createdAt": 1)"),
                  Quick::reads},
        Agreement{"UnknownMembersOutsideTheShape",
                  bindingFile(R"("gesture": "3.tap", "createdAt": 1, "extra": {"a": [1, null, true]})"), Quick::reads},
        Agreement{"DamagedShortcutIsDropped",
                  "[{" + id + R"(, "gesture": "3.tap", "createdAt": 1,
                   "action": {"appID": "keyboard", "optionID": "custom", "shortcut": {"key": 17.5, "modifiers": []}}}])",
                  Quick::reads},
        Agreement{"WholeNumberKeyWrittenAsDouble",
                  "[{" + id + R"(, "gesture": "3.tap", "createdAt": 1,
                   "action": {"appID": "keyboard", "optionID": "custom", "shortcut": {"key": 17.0, "modifiers": ["shift"]}}}])",
                  Quick::reads},
        // Forms left to the full reader, whose tolerances decide them.
        Agreement{"RepeatedBindingMember", bindingFile(R"("gesture": "3.tap", "gesture": "4.tap", "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"RepeatedShape",
                  bindingFile(R"("gesture": {"id": "3.custom.X", "custom": )" + shape + ", \"custom\": null}, \"createdAt\": 1"),
                  Quick::givesUp},
        Agreement{"ShapeWithAnExtraMember",
                  bindingFile(R"("gesture": {"id": "3.custom.X", "custom": {"name": "Z", "fingers": 3, "path": [],
                               "strokes": [], "colour": 1}}, "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"FingerCountWrittenAsDouble",
                  bindingFile(R"("gesture": {"id": "3.custom.X", "custom": {"name": "Z", "fingers": 3.0, "path": [],
                               "strokes": []}}, "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"SixFingers",
                  bindingFile(R"("gesture": {"id": "3.custom.X", "custom": {"name": "Z", "fingers": 6, "path": [],
                               "strokes": []}}, "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"PointOfThreeNumbers",
                  bindingFile(R"("gesture": {"id": "3.custom.X", "custom": {"name": "Z", "fingers": 3,
                               "path": [[0, 1, 2]], "strokes": []}}, "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"ShapeThatIsNotAnObject", bindingFile(R"("gesture": {"id": "3.custom.X", "custom": null}, "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"LegacyGestureCarryingAShape",
                  bindingFile(R"("gesture": {"fingers": 3, "motion": "tap", "custom": )" + shape + R"(}, "createdAt": 1)"),
                  Quick::givesUp},
        Agreement{"NumberTooLarge", bindingFile(R"("gesture": "3.tap", "createdAt": 1e999)"), Quick::givesUp},
        Agreement{"TrailingText", bindingFile(R"("gesture": "3.tap", "createdAt": 1)") + " x", Quick::givesUp},
        Agreement{"MissingAction", "[{" + id + R"(, "gesture": "3.tap", "createdAt": 1}])", Quick::givesUp},
        Agreement{"NotAnArray", "{}", Quick::givesUp},
        Agreement{"Empty", "", Quick::givesUp},
        // Either way is right, as long as the two agree.
        Agreement{"IntegerBeyondSixtyFourBits", bindingFile(R"("gesture": "3.tap", "createdAt": 18446744073709551616)"),
                  Quick::either},
        Agreement{"ByteOrderMark", "\xEF\xBB\xBF" + bindingFile(R"("gesture": "3.tap", "createdAt": 1)"), Quick::either},
        Agreement{"LoneSurrogate", bindingFile(R"("gesture": "3.tap\ud800", "createdAt": 1)"), Quick::either},
        Agreement{"DeepNesting", bindingFile(R"("gesture": "3.tap", "createdAt": 1, "deep": )" + std::string(2000, '[') +
                                             std::string(2000, ']')),
                  Quick::either}),
    [](const auto& row) { return std::string(row.param.name); });

}  // namespace
}  // namespace ostrelle
