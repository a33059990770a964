#include "platform/files/info_plist.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

constexpr auto head = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
<dict>
)";

TEST(InfoPlist, ReadsOnlyAStringOfTheTopLevelDictionary) {
    struct Row {
        const char* name;
        std::string body;
        std::optional<std::string> identifier;
    };
    const Row rows[] = {
        {"plain",
         "<key>CFBundleName</key><string>Preview</string>\n"
         "\t<key>CFBundleIdentifier</key>\n\t<string>com.example.preview</string>",
         "com.example.preview"},
        {"afterNestedOnes",
         "<key>CFBundleDocumentTypes</key><array><dict><key>CFBundleIdentifier</key><string>inner</string>"
         "</dict></array><key>Nested</key><dict><key>CFBundleIdentifier</key><string>deeper</string></dict>"
         "<key>CFBundleIdentifier</key><string>outer</string>",
         "outer"},
        {"entities", "<key>CFBundleIdentifier</key><string>com.a&amp;b.&lt;x&gt;</string>", "com.a&b.<x>"},
        {"comment",
         "<!-- <key>CFBundleIdentifier</key><string>no</string> -->"
         "<key>CFBundleIdentifier</key><string>yes</string>",
         "yes"},
        {"notAString", "<key>CFBundleIdentifier</key><integer>7</integer><string>stray</string>",
         std::nullopt},
        {"emptyString", "<key>CFBundleIdentifier</key><string/>", ""},
        {"missing", "<key>CFBundleName</key><string>Preview</string>", std::nullopt},
    };
    for (const Row& row : rows) {
        const std::string plist = head + row.body + "\n</dict>\n</plist>\n";
        EXPECT_EQ(topLevelPlistString(plist, "CFBundleIdentifier"), row.identifier) << row.name;
    }
    EXPECT_EQ(topLevelPlistString("bplist00\xd1\x01\x02_\x10\x12"
                                  "CFBundleIdentifier",
                                  "CFBundleIdentifier"),
              std::nullopt);
}

}  // namespace
}  // namespace ostrelle
