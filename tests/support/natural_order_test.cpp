#include "support/natural_order.h"

#include <gtest/gtest.h>

#include <string>

namespace ostrelle {
namespace {

TEST(NaturalOrder, SortsLowerFirst) {
    const std::pair<const char*, const char*> rows[] = {
        {"Tool 2", "Tool 10"},  // numbers by value
        {"a9b", "a10a"},        // numbers inside
        {"v007", "v10"},        // leading zeros
        {"apple", "Banana"},    // case does not win
        {"Mail", "Mailbox"},    // a prefix first
        {"2Do", "Alpha"},       // digits before letters
        {"Émile", "Fax"},       // an accent does not sort last
        {"x 99999999999999999999", "x 100000000000000000000"},
        {"", "a"},
    };
    for (const auto& [lower, higher] : rows) {
        EXPECT_TRUE(std::is_lt(naturalCompare(lower, higher))) << lower;
        EXPECT_TRUE(std::is_gt(naturalCompare(higher, lower))) << lower;
    }
    for (const auto& [a, b] :
         {std::pair{"safari", "SAFARI"}, {"Résumé", "Resume"}, {"App 01", "App 1"}, {"", ""}})
        EXPECT_TRUE(std::is_eq(naturalCompare(a, b))) << a;
}

}  // namespace
}  // namespace ostrelle
