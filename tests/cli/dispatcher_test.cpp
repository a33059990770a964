#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "cli/cli_runner.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle {
namespace {

using testing::CLIResult;
using testing::runCLI;

TEST(CLIDispatcher, ListsCommandsOnHelpAndRefusesUnknownOnes) {
    for (const char* asked : {"--help", "-h", "help"}) {
        const CLIResult help = runCLI({asked});
        EXPECT_EQ(help.status, 0) << asked;
        EXPECT_TRUE(help.out.starts_with("usage: ostrelle-cli COMMAND [ARGUMENTS]\n")) << asked;
        EXPECT_NE(help.out.find("\n  replay FILE "), std::string::npos);
        EXPECT_NE(help.out.find("\n  gestures\n"), std::string::npos);
    }

    const CLIResult none = runCLI({});
    EXPECT_EQ(none.status, 2);
    EXPECT_TRUE(none.err.starts_with("error: no command given\nusage: ")) << none.err;

    const CLIResult unknown = runCLI({"frobnicate"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(unknown.err.starts_with("error: unknown command \"frobnicate\"\nusage: ")) << unknown.err;
    EXPECT_EQ(unknown.out, "");
}

TEST(GesturesCommand, PrintsTheWholeCatalogInOrder) {
    const CLIResult result = runCLI({"gestures"});
    ASSERT_EQ(result.status, 0) << result.err;
    const auto lines = result.outLines();
    ASSERT_FALSE(lines.empty());
    EXPECT_TRUE(lines[0].starts_with(R"({"id": "2.restTap.left", "name": ")")) << lines[0];
    EXPECT_TRUE(lines[0].ends_with(R"(", "fingers": 2, "group": "two", "sortKey": 0, "enabled": true})"))
        << lines[0];

    std::size_t index = 0;
    for (const GestureGroup& group : GestureCatalog::allGroups()) {
        for (const GestureDef& def : group.gestures) {
            ASSERT_LT(index, lines.size());
            const auto line = nlohmann::json::parse(lines[index++]);
            EXPECT_EQ(line["id"], def.id);
            EXPECT_EQ(line["name"], def.name);
            EXPECT_EQ(line["hint"], def.hint);
            EXPECT_EQ(line["fingers"], def.fingers);
            EXPECT_EQ(line["group"], group.id);
            EXPECT_EQ(line["sortKey"], GestureCatalog::order().at(def.id));
            EXPECT_EQ(line["enabled"], GestureCatalog::enabled().contains(def.id)) << def.id;
        }
    }
    EXPECT_EQ(index, lines.size());

    EXPECT_EQ(runCLI({"gestures", "extra"}).status, 2);
}

}  // namespace
}  // namespace ostrelle
