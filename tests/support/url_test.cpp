#include "support/url.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

TEST(URLValue, FileURLOfADirectoryEndsInASlashAndEscapes) {
    EXPECT_EQ(URL::fileURL("/Applications/Preview.app", true).absoluteString(),
              "file:///Applications/Preview.app/");
    EXPECT_EQ(URL::fileURL("/Applications/Preview.app/", true).absoluteString(),
              "file:///Applications/Preview.app/");
    EXPECT_EQ(URL::fileURL("/tmp/a b#c?d%e.txt", false).absoluteString(),
              "file:///tmp/a%20b%23c%3Fd%25e.txt");
    EXPECT_EQ(URL::fileURL("/Apps/Café.app", true).absoluteString(), "file:///Apps/Caf%C3%A9.app/");
}

TEST(URLValue, PathIsDecodedWithoutTrailingSlash) {
    const URL url = URL::fileURL("/Apps/My Café.app", true);
    EXPECT_TRUE(url.isFileURL());
    EXPECT_EQ(url.path(), "/Apps/My Café.app");
    EXPECT_EQ(url.lastPathComponent(), "My Café.app");
    EXPECT_EQ(url.pathExtension(), "app");
    EXPECT_EQ(URL::fileURL("/", true).path(), "/");
}

TEST(URLValue, ParseKeepsValidTextAndEscapesTheRest) {
    EXPECT_FALSE(URL::parse(""));
    EXPECT_EQ(URL::parse("file:///A%20B.app/")->absoluteString(), "file:///A%20B.app/");
    EXPECT_EQ(URL::parse("file:///A B.app/")->absoluteString(), "file:///A%20B.app/");
    EXPECT_EQ(URL::parse("file:///100%.app")->absoluteString(), "file:///100%25.app");
    EXPECT_EQ(URL::parse("file:///A%20B.app/")->path(), "/A B.app");
}

TEST(URLValue, SchemesAndExtensions) {
    EXPECT_TRUE(URL::parse("FILE:///x.app")->isFileURL());
    EXPECT_FALSE(URL::parse("https://example.com/x.app")->isFileURL());
    EXPECT_FALSE(URL::parse("x.app")->isFileURL());
    EXPECT_EQ(URL::parse("https://example.com/x.app?y=1#z")->path(), "/x.app");
    EXPECT_EQ(URL::parse("file:///a/.hidden")->pathExtension(), "");
    EXPECT_EQ(URL::parse("file:///a/archive.tar.gz")->pathExtension(), "gz");
    EXPECT_EQ(URL::parse("file:///a.b/noext")->pathExtension(), "");
}

}  // namespace
}  // namespace ostrelle
