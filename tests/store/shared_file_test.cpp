// Several processes share one bindings file: each store stands in for one of them.
#include <gtest/gtest.h>

#include "store/binding_store.h"
#include "store/bindings_file.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

const ActionRef mission{"system", "mission", {}, {}};

struct SharedFile : ::testing::Test {
    testing::TemporaryFolder folder;
    fs::path file = folder.path() / "Ostrelle" / "bindings.json";

    std::unique_ptr<BindingStore> open() {
        return std::make_unique<BindingStore>(file, false, [] { return 1731600000.0; });
    }
    std::vector<std::string> gesturesOnDisk() const {
        std::vector<std::string> ids;
        for (const GestureBinding& b : decodeBindingsFile(testing::readText(file)))
            ids.push_back(b.gesture.id);
        return ids;
    }
};

TEST_F(SharedFile, AChangeStartsFromWhatTheFileHoldsSoNoWriterLosesAnother) {
    const auto service = open();
    const auto commandLine = open();
    ASSERT_TRUE(commandLine->save(GestureBinding::make(Gesture("5.tap"), mission, 1)));
    // The service has not looked yet: its own change must keep the other's.
    ASSERT_TRUE(service->save(GestureBinding::make(Gesture("4.swipe.left"), mission, 1)));
    const std::vector<std::string> both{"2.restTap.left", "2.restTap.right", "3.tap",
                                        "4.tap",          "5.tap",           "4.swipe.left"};
    EXPECT_EQ(gesturesOnDisk(), both);
    EXPECT_EQ(service->bindings().size(), both.size());
    // A gesture the other process took meanwhile is refused, not bound twice.
    EXPECT_FALSE(commandLine->save(GestureBinding::make(Gesture("4.swipe.left"), mission, 2)));
    commandLine->remove(service->bindings()[0].id);
    EXPECT_EQ(gesturesOnDisk().size(), both.size() - 1);
}

TEST_F(SharedFile, RefreshTakesUpAnotherProcesssChangeOnceAndIgnoresAFileHalfEditedByHand) {
    const auto service = open();
    int changes = 0;
    service->observers.add([&] { ++changes; });
    EXPECT_FALSE(service->refresh());  // its own write is nothing new

    open()->remove(service->bindings()[0].id);
    EXPECT_TRUE(service->refresh());
    EXPECT_FALSE(service->refresh());
    EXPECT_EQ(service->bindings().size(), 3U);
    EXPECT_EQ(changes, 1);

    testing::writeText(file, "[{");
    EXPECT_FALSE(service->refresh());
    EXPECT_EQ(service->bindings().size(), 3U);
    // The next change keeps the broken file aside rather than overwriting it unseen.
    ASSERT_TRUE(service->save(GestureBinding::make(Gesture("5.tap"), mission, 1)));
    EXPECT_TRUE(fs::exists(file.parent_path() / "bindings.corrupt-1731600000.json"));
    EXPECT_EQ(gesturesOnDisk().size(), 4U);
}

TEST_F(SharedFile, OpeningClearsWhatAKilledWriterLeftButNotOtherFiles) {
    open();
    const fs::path abandoned = file.parent_path() / ".bindings.json.a1B2c3";
    const fs::path unrelated = file.parent_path() / ".bindings.json.keep";
    testing::writeText(abandoned, "[{\"half");
    testing::writeText(unrelated, "mine");
    const auto store = open();
    EXPECT_EQ(store->bindings().size(), 4U);
    EXPECT_FALSE(fs::exists(abandoned));
    EXPECT_TRUE(fs::exists(unrelated));
}

}  // namespace
}  // namespace ostrelle
