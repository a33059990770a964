// The binding store: every way of loading, the save refusal, names and grouping, observers.
#include "store/binding_store.h"

#include <gtest/gtest.h>

#include "recognition/shape_matching.h"
#include "store/bindings_file.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;
using Outcome = BindingStoreLoad::Outcome;

constexpr double pinnedNow = 1731600000.75;  // Unix seconds
const std::string folderInTheWay = "<a folder where the file should be>";
const ActionRef mission{"system", "mission", {}, {}};

// A file of bindings of the gestures (JSON texts) to one catalog action.
std::string fileOf(std::vector<std::string> gestures, std::string app = "browsers",
                   std::string option = "back") {
    std::string text;
    for (const std::string& gesture : gestures) {
        text += std::string(text.empty() ? "[" : ",") +
                R"({"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A2B", "gesture": )" + gesture +
                R"(, "action": {"appID": ")" + app + R"(", "optionID": ")" + option +
                R"("}, "createdAt": 5})";
    }
    return text + "]";
}

Gesture drawnGesture(const std::string& name, int fingers = 3) {
    CustomShape shape = shapes::fromDrawing(fingers, {{0, 0}, {0, 1}, {1, 1}}, {{{0, 0}, {1, 1}}});
    shape.name = name;
    return Gesture::newCustom(shape);
}

// A bindings file in a fresh folder, and a store opened on it.
struct StoreFiles {
    testing::TemporaryFolder folder;
    fs::path file = folder.path() / "Ostrelle" / "bindings.json";

    std::unique_ptr<BindingStore> open(const std::optional<std::string>& contents,
                                       bool launchedBefore = false) {
        fs::create_directories(file.parent_path());
        if (contents == folderInTheWay) fs::create_directories(file / "inside");
        if (contents && contents != folderInTheWay) testing::writeText(file, *contents);
        return std::make_unique<BindingStore>(file, launchedBefore, [] { return pinnedNow; });
    }
};

constexpr const char* backup = "bindings.before-migration-1731600000.json";
constexpr const char* corrupt = "bindings.corrupt-1731600000.json";
const char* const nineFingerShape =
    R"({"id": "9.custom.X", "custom": {"name": "x", "fingers": 9, "path": [], "strokes": []}})";

struct StoreTest : StoreFiles, ::testing::Test {};

TEST(StoreLoad, KeepsWhatItCanAndWritesTheResultBack) {
    const struct {
        const char* name;
        std::optional<std::string> contents;  // nothing: no file at all
        bool launchedBefore;
        Outcome outcome;
        std::size_t kept, dropped;
        std::string sideFile;  // the backup or set-aside copy; empty: none
        std::string last;      // the last binding as "gesture app/option"
    } rows[] = {
        {"firstLaunchIsSeeded", std::nullopt, false, Outcome::seeded, 4, 0, "", "4.tap system/mission"},
        {"earlierUserGetsTheLegacySeed", std::nullopt, true, Outcome::seeded, 9, 0, "",
         "5.tap system/screenshot"},
        {"emptyArrayIsNotCorrupt", "[]", false, Outcome::loaded, 0, 0, "", ""},
        {"unknownGestureIsDroppedWithABackup", fileOf({"\"9.tap\"", "\"3.tap\""}), false, Outcome::loaded, 1,
         1, backup, "3.tap browsers/back"},
        {"vanishedActionIsDropped", fileOf({"\"4.tap\""}, "nosuchapp", "nothing"), false, Outcome::loaded, 0,
         1, backup, ""},
        {"nineFingerShapeIsDropped", fileOf({nineFingerShape}), false, Outcome::loaded, 0, 1, backup, ""},
        {"migratedActionNeedsNoBackup", fileOf({R"({"fingers": 3, "motion": "tap"})"}, "safari", "next"),
         false, Outcome::loaded, 1, 0, "", "3.tap browsers/right"},
        {"corruptFileIsSetAsideForASeed", "{", false, Outcome::setAside, 4, 0, corrupt,
         "4.tap system/mission"},
        {"unreadableFileIsSetAsideLikeACorruptOne", folderInTheWay, true, Outcome::setAside, 9, 0, corrupt,
         "5.tap system/screenshot"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        StoreFiles files;
        const auto store = files.open(row.contents, row.launchedBefore);
        const std::vector<GestureBinding>& bindings = store->bindings();
        EXPECT_EQ(store->load().outcome, row.outcome);
        ASSERT_EQ(bindings.size(), row.kept);
        EXPECT_EQ(store->load().dropped, row.dropped);
        const GestureBinding* last = bindings.empty() ? nullptr : &bindings.back();
        EXPECT_EQ(last ? last->gesture.id + " " + last->action.appID + "/" + last->action.optionID : "",
                  row.last);
        // A seed is created now, counted in seconds since 2001.
        EXPECT_TRUE(row.outcome == Outcome::loaded || bindings[0].createdAt == pinnedNow - 978307200.0);
        const fs::path folder = files.file.parent_path();
        EXPECT_EQ(testing::readText(files.file), encodeBindingsFile(bindings));
        // The file, its lock file and at most the side file: nothing else left behind.
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), fs::directory_iterator()),
                  row.sideFile.empty() ? 2 : 3);
        if (row.sideFile.empty()) continue;
        EXPECT_EQ(row.outcome == Outcome::setAside ? store->load().setAside : store->load().backup,
                  folder / row.sideFile);
        if (row.contents != folderInTheWay) {
            EXPECT_EQ(testing::readText(folder / row.sideFile), row.contents);
        }
    }
}

TEST_F(StoreTest, InvalidShapesAreDroppedToo) {
    const GestureBinding unnamed = GestureBinding::make(drawnGesture("   "), mission, 1);
    const GestureBinding fine = GestureBinding::make(drawnGesture("Zig"), mission, 1);
    const auto store = open(encodeBindingsFile({unnamed, fine}));
    EXPECT_EQ(store->bindings(), std::vector<GestureBinding>{fine});
    EXPECT_EQ(store->load().dropped, 1U);
}

TEST_F(StoreTest, WriteFailuresAreSwallowedAndTheListStaysTheTruth) {
    testing::writeText(folder.path() / "blocked", "x");  // a file where the folder should be
    BindingStore store(folder.path() / "blocked" / "bindings.json", false, [] { return pinnedNow; });
    EXPECT_TRUE(store.save(GestureBinding::make(Gesture("5.tap"), mission, 1)));
    EXPECT_EQ(store.bindings().size(), 5U);
}

TEST_F(StoreTest, SaveRefusesAGestureAnotherBindingHoldsAndReplacesInPlaceRemoveAlwaysWrites) {
    const auto store = open(std::nullopt);
    int changes = 0;
    store->observers.add([&] { ++changes; });
    EXPECT_FALSE(store->save(GestureBinding::make(Gesture("3.tap"), mission, 1)));
    EXPECT_TRUE(store->isInUse(Gesture("3.tap"), std::nullopt));
    GestureBinding edited = store->bindings()[2];
    EXPECT_FALSE(store->isInUse(edited.gesture, edited.id));
    edited.action = mission;
    EXPECT_TRUE(store->save(edited));
    EXPECT_EQ(store->bindings()[2], edited);
    EXPECT_EQ(decodeBindingsFile(testing::readText(file))[2].action, mission);
    // Looked up by the id alone, shapes aside.
    Gesture withShape("3.tap");
    withShape.custom = drawnGesture("x").custom;
    EXPECT_EQ(store->bindingFor(withShape), &store->bindings()[2]);
    EXPECT_EQ(store->bindingFor(Gesture("5.swipe.up")), nullptr);

    store->remove(store->bindings()[1].id);
    EXPECT_EQ(store->bindings().size(), 3U);
    EXPECT_EQ(store->bindings()[1], edited);
    fs::remove(file);
    store->remove("no such id");
    EXPECT_TRUE(fs::exists(file));
    EXPECT_EQ(changes, 3);  // not the refused save
}

TEST_F(StoreTest, CustomNamesTakeTheFirstFreeNumberAndGroupsSortByCatalogOrderThenCreation) {
    const auto store = open("[]");
    EXPECT_EQ(store->nextCustomName(), "Custom gesture 1");
    const std::vector<std::pair<Gesture, double>> saved{
        {drawnGesture("Custom gesture 3"), 30}, {Gesture("3.swipe.up"), 50},
        {drawnGesture("custom gesture 1"), 10}, {Gesture("3.click"), 60},
        {Gesture("2.restTap.right"), 1},        {Gesture("9.tap"), 1},  // no definition: never listed
    };
    for (const auto& [gesture, createdAt] : saved)
        store->save(GestureBinding::make(gesture, mission, createdAt));
    EXPECT_EQ(store->nextCustomName(), "Custom gesture 1");  // names compare with case
    store->save(GestureBinding::make(drawnGesture("Custom gesture 1", 4), mission, 1));
    EXPECT_EQ(store->nextCustomName(), "Custom gesture 2");
    EXPECT_EQ(store->customGestures().size(), 3U);
    const auto groups = store->groupedByFingers();
    ASSERT_EQ(groups.size(), 3U);
    EXPECT_EQ(groups[0].fingers, 2);
    EXPECT_EQ(groups[1].fingers, 3);
    std::vector<std::string> three;
    for (const GestureBinding& b : groups[1].bindings)
        three.push_back(b.gesture.custom ? b.gesture.custom->name : b.gesture.id);
    EXPECT_EQ(three,
              (std::vector<std::string>{"3.click", "3.swipe.up", "custom gesture 1", "Custom gesture 3"}));
}

}  // namespace
}  // namespace ostrelle
