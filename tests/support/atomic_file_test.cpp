// Atomic replacement of a file, and reading with "missing" told apart from "unreadable".
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <filesystem>
#include <fstream>

#include "support/atomic_file.h"
#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

TEST(AtomicFile, CreatesFoldersAndReplacesWholeFiles) {
    testing::TemporaryFolder folder;
    const fs::path file = folder.path() / "a" / "b" / "bindings.json";
    ASSERT_FALSE(writeFileAtomically(file, "first version, longer").has_value());
    ASSERT_FALSE(writeFileAtomically(file, "second").has_value());
    const FileReadResult read = readWholeFile(file);
    EXPECT_EQ(read.status, FileReadResult::Status::ok);
    EXPECT_EQ(read.bytes, "second");
    // No temporary file is left behind.
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), fs::directory_iterator()), 1);
}

TEST(AtomicFile, AFailedWriteLeavesTheOldFileAndNoLitter) {
    if (::geteuid() == 0) GTEST_SKIP() << "root writes into read-only folders";
    testing::TemporaryFolder folder;
    const fs::path file = folder.path() / "bindings.json";
    ASSERT_FALSE(writeFileAtomically(file, "old").has_value());
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    const auto error = writeFileAtomically(file, "new");
    fs::permissions(folder.path(), fs::perms::owner_all);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(readWholeFile(file).bytes, "old");
}

TEST(AtomicFile, AFolderInTheWayIsReported) {
    testing::TemporaryFolder folder;
    const fs::path file = folder.path() / "bindings.json";
    fs::create_directories(file / "inside");
    EXPECT_TRUE(writeFileAtomically(file, "x").has_value());
    EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), fs::directory_iterator()), 1);
}

TEST(ReadWholeFile, TellsMissingFromUnreadable) {
    testing::TemporaryFolder folder;
    EXPECT_EQ(readWholeFile(folder.path() / "none.json").status, FileReadResult::Status::missing);
    EXPECT_EQ(readWholeFile(folder.path()).status, FileReadResult::Status::unreadable);
    std::ofstream(folder.path() / "empty.json").flush();
    const FileReadResult empty = readWholeFile(folder.path() / "empty.json");
    EXPECT_EQ(empty.status, FileReadResult::Status::ok);
    EXPECT_EQ(empty.bytes, "");
}

TEST(ReadWholeFile, ReadsLargeFilesWhole) {
    testing::TemporaryFolder folder;
    std::string bytes;
    for (int i = 0; bytes.size() < 300'000; ++i) bytes += std::to_string(i) + '\n';
    ASSERT_FALSE(writeFileAtomically(folder.path() / "large.json", bytes).has_value());
    EXPECT_EQ(readWholeFile(folder.path() / "large.json").bytes, bytes);
}

}  // namespace
}  // namespace ostrelle
