// Atomic replacement of a file, and reading with "missing" told apart from "unreadable".
#include "support/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "testing/temporary_folder.h"

namespace ostrelle {
namespace {

namespace fs = std::filesystem;

std::size_t entries(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

// A replacement keeps the mode of the file it replaces (a private file stays private); a new
// file gets the usual one, whatever mode the temporary file was created with.
TEST(AtomicFile, CreatesFoldersAndReplacesWholeFilesKeepingTheirMode) {
    const std::pair<const char*, mode_t> rows[] = {{"new", 0}, {"private", 0600}, {"groupReadable", 0640}};
    for (const auto& [name, mode] : rows) {
        testing::TemporaryFolder folder;
        const fs::path file = folder.path() / "a" / "b" / "bindings.json";
        if (mode != 0) {
            ASSERT_FALSE(writeFileAtomically(file, "first version, longer").has_value());
            ASSERT_EQ(::chmod(file.c_str(), mode), 0);
        }
        ASSERT_FALSE(writeFileAtomically(file, "second").has_value());
        EXPECT_EQ(readWholeFile(file).bytes, "second") << name;
        EXPECT_EQ(entries(file.parent_path()), 1U) << name << ": no temporary file is left behind";
        struct stat written {};
        ASSERT_EQ(::stat(file.c_str(), &written), 0);
        EXPECT_EQ(written.st_mode & 07777, mode != 0 ? mode : 0644) << name;
    }
}

TEST(AtomicFile, AFailedWriteLeavesTheOldFileAndNoLitter) {
    testing::TemporaryFolder folder;
    const fs::path blocked = folder.path() / "bindings.json";
    fs::create_directories(blocked / "inside");  // a folder in the way is never replaced
    EXPECT_TRUE(writeFileAtomically(blocked, "x").has_value());
    EXPECT_EQ(entries(folder.path()), 1U);
    if (::geteuid() == 0) GTEST_SKIP() << "root writes into read-only folders";
    const fs::path file = folder.path() / "kept.json";
    ASSERT_FALSE(writeFileAtomically(file, "old").has_value());
    fs::permissions(folder.path(), fs::perms::owner_read | fs::perms::owner_exec);
    const auto error = writeFileAtomically(file, "new");
    fs::permissions(folder.path(), fs::perms::owner_all);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(readWholeFile(file).bytes, "old");
}

TEST(ReadWholeFile, TellsMissingFromUnreadableAndReadsWhole) {
    testing::TemporaryFolder folder;
    EXPECT_EQ(readWholeFile(folder.path() / "none.json").status, FileReadResult::Status::missing);
    EXPECT_EQ(readWholeFile(folder.path()).status, FileReadResult::Status::unreadable);
    testing::writeText(folder.path() / "empty.json", "");
    const FileReadResult empty = readWholeFile(folder.path() / "empty.json");
    EXPECT_EQ(empty.status, FileReadResult::Status::ok);
    EXPECT_EQ(empty.bytes, "");
    std::string bytes;
    for (int i = 0; bytes.size() < 300'000; ++i) bytes += std::to_string(i) + '\n';
    testing::writeText(folder.path() / "large.json", bytes);
    EXPECT_EQ(readWholeFile(folder.path() / "large.json").bytes, bytes);
}

}  // namespace
}  // namespace ostrelle
