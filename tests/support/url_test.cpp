#include "support/url.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

TEST(URLValue, FileURLOfADirectoryEndsInASlashEscapesAndDecodesBack) {
    const auto text = [](std::string_view p, bool folder) {
        return URL::fileURL(p, folder).absoluteString();
    };
    EXPECT_EQ(text("/Applications/Preview.app/", true), "file:///Applications/Preview.app/");
    EXPECT_EQ(text("/tmp/a b#c?d%e.txt", false), "file:///tmp/a%20b%23c%3Fd%25e.txt");
    EXPECT_EQ(text("/Apps/Café.app", true), "file:///Apps/Caf%C3%A9.app/");
    const URL url = URL::fileURL("/Apps/My Café.app", true);
    EXPECT_TRUE(url.isFileURL());
    EXPECT_EQ(url.path(), "/Apps/My Café.app");
    EXPECT_EQ(url.lastPathComponent(), "My Café.app");
    EXPECT_EQ(url.pathExtension(), "app");
    EXPECT_EQ(URL::fileURL("/", true).path(), "/");
}

TEST(URLValue, ParseKeepsValidTextEscapesTheRestAndReadsSchemesAndExtensions) {
    EXPECT_FALSE(URL::parse(""));
    EXPECT_EQ(URL::parse("file:///A%20B.app/")->absoluteString(), "file:///A%20B.app/");
    EXPECT_EQ(URL::parse("file:///A B.app/")->absoluteString(), "file:///A%20B.app/");
    EXPECT_EQ(URL::parse("file:///100%.app")->absoluteString(), "file:///100%25.app");
    EXPECT_TRUE(URL::parse("FILE:///x.app")->isFileURL());
    EXPECT_FALSE(URL::parse("https://example.com/x.app")->isFileURL());
    EXPECT_EQ(URL::parse("https://example.com/x.app?y=1#z")->path(), "/x.app");
    EXPECT_EQ(URL::parse("file:///a/.hidden")->pathExtension(), "");
    EXPECT_EQ(URL::parse("file:///a/archive.tar.gz")->pathExtension(), "gz");
    EXPECT_EQ(URL::parse("file:///a.b/noext")->pathExtension(), "");
}

}  // namespace
}  // namespace ostrelle
