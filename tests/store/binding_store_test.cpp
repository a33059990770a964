// The binding store: every way of loading, the save refusal, names and grouping, observers.
#include <gtest/gtest.h>

#include <fstream>

#include "store/binding_store.h"
#include "store/bindings_file.h"
#include "testing/temporary_folder.h"
#include "recognition/shape_matching.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;
using testing::readText;
using testing::TemporaryFolder;
using testing::writeText;

constexpr double pinnedNow = 1731600000.75;  // Unix seconds
WallClock pinnedClock() {
    return [] { return pinnedNow; };
}

std::vector<std::string> gestureIDs(const std::vector<GestureBinding>& bindings) {
    std::vector<std::string> ids;
    for (const GestureBinding& b : bindings) ids.push_back(b.gesture.id);
    return ids;
}

std::string fileWith(const std::vector<std::pair<std::string, std::string>>& gestureAndOption) {
    std::string text = "[";
    int n = 0;
    for (const auto& [gesture, option] : gestureAndOption) {
        if (n++) text += ",";
        text += R"({"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2)" + std::to_string(n) + R"(", "gesture": ")" + gesture +
                R"(", "action": {"appID": "browsers", "optionID": ")" + option + R"("}, "createdAt": 5})";
    }
    return text + "]";
}

Gesture drawnGesture(const std::string& name, int fingers = 3) {
    CustomShape shape = shapes::fromDrawing(fingers, {{0, 0}, {0, 1}, {1, 1}}, {{{0, 0}, {1, 1}}});
    shape.name = name;
    return Gesture::newCustom(shape);
}

struct StoreTest : ::testing::Test {
    TemporaryFolder folder;
    fs::path file = folder.path() / "Ostrelle" / "bindings.json";
    std::size_t filesInFolder() const {
        return static_cast<std::size_t>(
            std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()));
    }
};

TEST_F(StoreTest, AFirstLaunchIsSeededAndWritten) {
    BindingStore store(file, false, pinnedClock());
    EXPECT_EQ(gestureIDs(store.bindings()), (std::vector<std::string>{"2.restTap.left", "2.restTap.right", "3.tap", "4.tap"}));
    EXPECT_EQ(store.bindings()[3].action.appID, "system");
    EXPECT_EQ(store.bindings()[0].createdAt, pinnedNow - 978307200.0);
    EXPECT_EQ(store.load().outcome, BindingStoreLoad::Outcome::seeded);
    EXPECT_EQ(decodeBindingsFile(readText(file)), store.bindings());
}

TEST_F(StoreTest, AnEarlierUserWithoutAFileGetsTheLegacySeed) {
    BindingStore store(file, true, pinnedClock());
    EXPECT_EQ(store.bindings().size(), 9U);
    EXPECT_EQ(store.bindings()[8].gesture.id, "5.tap");
    EXPECT_EQ(store.bindings()[8].action.optionID, "screenshot");
}

TEST_F(StoreTest, AnEmptyArrayIsAnEmptyStoreNotACorruptOne) {
    fs::create_directories(file.parent_path());
    writeText(file, "[]");
    BindingStore store(file, false, pinnedClock());
    EXPECT_TRUE(store.bindings().empty());
    EXPECT_EQ(store.load().outcome, BindingStoreLoad::Outcome::loaded);
    EXPECT_EQ(filesInFolder(), 1U);
    EXPECT_EQ(readText(file), "[\n\n]");
}

TEST_F(StoreTest, AnUnknownGestureIsDroppedWithABackupOfTheOldFile) {
    fs::create_directories(file.parent_path());
    const std::string old = fileWith({{"9.tap", "back"}, {"3.tap", "back"}});
    writeText(file, old);
    BindingStore store(file, false, pinnedClock());
    EXPECT_EQ(gestureIDs(store.bindings()), std::vector<std::string>{"3.tap"});
    const fs::path backup = file.parent_path() / "bindings.before-migration-1731600000.json";
    EXPECT_EQ(store.load().backup, backup);
    EXPECT_EQ(readText(backup), old);
    EXPECT_EQ(gestureIDs(decodeBindingsFile(readText(file))), std::vector<std::string>{"3.tap"});
}

TEST_F(StoreTest, InvalidShapesAndVanishedActionsAreDroppedToo) {
    GestureBinding unnamed = GestureBinding::make(drawnGesture("   "), ActionRef{"browsers", "back", {}, {}}, 1);
    GestureBinding gone = GestureBinding::make(Gesture("4.tap"), ActionRef{"nosuchapp", "nothing", {}, {}}, 1);
    GestureBinding fine = GestureBinding::make(drawnGesture("Zig"), ActionRef{"browsers", "back", {}, {}}, 1);
    fs::create_directories(file.parent_path());
    writeText(file, encodeBindingsFile({unnamed, gone, fine}));
    BindingStore store(file, false, pinnedClock());
    ASSERT_EQ(store.bindings().size(), 1U);
    EXPECT_EQ(store.bindings()[0], fine);
    EXPECT_EQ(store.load().dropped, 2U);
}

TEST_F(StoreTest, ACustomShapeWithAnImpossibleFingerCountIsDroppedNotFatal) {
    fs::create_directories(file.parent_path());
    writeText(file, R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B",
        "gesture": {"id": "9.custom.X", "custom": {"name": "x", "fingers": 9, "path": [], "strokes": []}},
        "action": {"appID": "browsers", "optionID": "back"}, "createdAt": 5}])");
    BindingStore store(file, false, pinnedClock());
    EXPECT_TRUE(store.bindings().empty());
    EXPECT_EQ(store.load().dropped, 1U);
}

TEST_F(StoreTest, AMigratedActionIdIsRewrittenWithoutABackup) {
    fs::create_directories(file.parent_path());
    writeText(file, R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B",
        "gesture": {"fingers": 3, "motion": "tap"},
        "action": {"appID": "safari", "optionID": "next"}, "createdAt": 5}])");
    BindingStore store(file, false, pinnedClock());
    EXPECT_EQ(filesInFolder(), 1U);
    ASSERT_EQ(store.bindings().size(), 1U);
    EXPECT_EQ(store.bindings()[0].action, (ActionRef{"browsers", "right", {}, {}}));
    const std::string written = readText(file);
    EXPECT_NE(written.find(R"("gesture" : "3.tap")"), std::string::npos);
    EXPECT_NE(written.find(R"("optionID" : "right")"), std::string::npos);
}

TEST_F(StoreTest, ACorruptFileIsSetAsideAndASeedTakesItsPlace) {
    fs::create_directories(file.parent_path());
    writeText(file, "{");
    BindingStore store(file, false, pinnedClock());
    const fs::path aside = file.parent_path() / "bindings.corrupt-1731600000.json";
    EXPECT_EQ(readText(aside), "{");
    EXPECT_EQ(store.load().outcome, BindingStoreLoad::Outcome::setAside);
    EXPECT_EQ(store.load().setAside, aside);
    EXPECT_EQ(store.bindings().size(), 4U);
    EXPECT_EQ(decodeBindingsFile(readText(file)).size(), 4U);
}

TEST_F(StoreTest, AnUnreadableFileIsSetAsideLikeACorruptOne) {
    fs::create_directories(file / "a folder where the file should be");
    BindingStore store(file, true, pinnedClock());
    EXPECT_EQ(store.load().outcome, BindingStoreLoad::Outcome::setAside);
    EXPECT_TRUE(fs::is_directory(file.parent_path() / "bindings.corrupt-1731600000.json"));
    EXPECT_EQ(store.bindings().size(), 9U);
    EXPECT_TRUE(fs::is_regular_file(file));
}

TEST_F(StoreTest, WriteFailuresAreSwallowedAndTheListStaysTheTruth) {
    // The "folder" of the file is a plain file, so nothing can ever be written.
    fs::create_directories(folder.path());
    writeText(folder.path() / "blocked", "x");
    BindingStore store(folder.path() / "blocked" / "bindings.json", false, pinnedClock());
    EXPECT_EQ(store.bindings().size(), 4U);
    EXPECT_TRUE(store.save(GestureBinding::make(Gesture("5.tap"), ActionRef{"system", "mission", {}, {}}, 1)));
    EXPECT_EQ(store.bindings().size(), 5U);
}

TEST_F(StoreTest, SaveRefusesAGestureAnotherBindingHoldsAndReplacesInPlace) {
    BindingStore store(file, false, pinnedClock());
    const GestureBinding other = GestureBinding::make(Gesture("3.tap"), ActionRef{"system", "mission", {}, {}}, 1);
    EXPECT_FALSE(store.save(other));
    EXPECT_TRUE(store.isInUse(Gesture("3.tap"), std::nullopt));
    GestureBinding edited = store.bindings()[2];
    EXPECT_FALSE(store.isInUse(edited.gesture, edited.id));
    edited.action = ActionRef{"system", "mission", {}, {}};
    EXPECT_TRUE(store.save(edited));
    EXPECT_EQ(store.bindings()[2], edited);
    EXPECT_EQ(store.bindings().size(), 4U);
    EXPECT_EQ(decodeBindingsFile(readText(file))[2].action.appID, "system");
}

TEST_F(StoreTest, BindingForMatchesTheIdAloneAndTheFirstWins) {
    BindingStore store(file, false, pinnedClock());
    Gesture withShape("3.tap");
    withShape.custom = drawnGesture("x").custom;
    const GestureBinding* found = store.bindingFor(withShape);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->action.optionID, "newtab");
    EXPECT_EQ(store.bindingFor(Gesture("5.swipe.up")), nullptr);
}

TEST_F(StoreTest, RemoveDropsEveryBindingWithTheIdAndAlwaysWrites) {
    BindingStore store(file, false, pinnedClock());
    const std::string id = store.bindings()[1].id;
    store.remove(id);
    EXPECT_EQ(gestureIDs(store.bindings()), (std::vector<std::string>{"2.restTap.left", "3.tap", "4.tap"}));
    fs::remove(file);
    store.remove("no such id");
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(StoreTest, ObserversHearEveryChange) {
    BindingStore store(file, false, pinnedClock());
    int changes = 0;
    store.observers.add([&] { ++changes; });
    store.save(GestureBinding::make(Gesture("5.tap"), ActionRef{"system", "mission", {}, {}}, 1));
    store.save(GestureBinding::make(Gesture("5.tap"), ActionRef{"system", "mission", {}, {}}, 1));  // refused
    store.remove(store.bindings()[0].id);
    EXPECT_EQ(changes, 2);
}

TEST_F(StoreTest, NextCustomNameTakesTheFirstFreeNumberCaseSensitively) {
    BindingStore store(file, false, pinnedClock());
    EXPECT_EQ(store.nextCustomName(), "Custom gesture 1");
    store.save(GestureBinding::make(drawnGesture("Custom gesture 1"), ActionRef{"system", "mission", {}, {}}, 1));
    store.save(GestureBinding::make(drawnGesture("Custom gesture 3", 4), ActionRef{"system", "mission", {}, {}}, 2));
    EXPECT_EQ(store.nextCustomName(), "Custom gesture 2");
    EXPECT_EQ(store.customGestures().size(), 2U);

    BindingStore other(folder.path() / "other.json", false, pinnedClock());
    other.save(GestureBinding::make(drawnGesture("custom gesture 1"), ActionRef{"system", "mission", {}, {}}, 1));
    EXPECT_EQ(other.nextCustomName(), "Custom gesture 1");
}

TEST_F(StoreTest, GroupedByFingersSortsByCatalogOrderThenCreation) {
    fs::create_directories(file.parent_path());
    writeText(file, "[]");
    BindingStore store(file, false, pinnedClock());
    const ActionRef action{"system", "mission", {}, {}};
    store.save(GestureBinding::make(drawnGesture("late"), action, 30));
    store.save(GestureBinding::make(Gesture("3.swipe.up"), action, 50));
    store.save(GestureBinding::make(drawnGesture("early"), action, 10));
    store.save(GestureBinding::make(Gesture("3.click"), action, 60));
    store.save(GestureBinding::make(Gesture("2.restTap.right"), action, 1));
    store.save(GestureBinding::make(Gesture("9.tap"), action, 1));  // no definition: never listed
    const auto groups = store.groupedByFingers();
    ASSERT_EQ(groups.size(), 2U);
    EXPECT_EQ(groups[0].fingers, 2);
    EXPECT_EQ(groups[1].fingers, 3);
    std::vector<std::string> three;
    for (const GestureBinding& b : groups[1].bindings) three.push_back(b.gesture.custom ? b.gesture.custom->name : b.gesture.id);
    EXPECT_EQ(three, (std::vector<std::string>{"3.click", "3.swipe.up", "early", "late"}));
}

}  // namespace
}  // namespace ostrelle
