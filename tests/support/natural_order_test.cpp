#include "support/natural_order.h"

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace ostrelle {
namespace {

struct OrderCase {
    const char* name;
    const char* lower;
    const char* higher;
};

// Test names show the row name rather than the bytes of the row.
void PrintTo(const OrderCase& row, std::ostream* out) {
    *out << row.name;
}

class NaturalOrder : public ::testing::TestWithParam<OrderCase> {};

TEST_P(NaturalOrder, SortsLowerFirst) {
    EXPECT_TRUE(std::is_lt(naturalCompare(GetParam().lower, GetParam().higher)));
    EXPECT_TRUE(std::is_gt(naturalCompare(GetParam().higher, GetParam().lower)));
}

INSTANTIATE_TEST_SUITE_P(
    Cases, NaturalOrder,
    ::testing::Values(OrderCase{"numberByValue", "Tool 2", "Tool 10"},
                      OrderCase{"numberInside", "a9b", "a10a"}, OrderCase{"leadingZeros", "v007", "v10"},
                      OrderCase{"caseDoesNotWin", "apple", "Banana"},
                      OrderCase{"prefixFirst", "Mail", "Mailbox"},
                      OrderCase{"digitsBeforeLetters", "2Do", "Alpha"},
                      OrderCase{"accentNotAtEnd", "Émile", "Fax"},
                      OrderCase{"hugeNumbers", "x 99999999999999999999", "x 100000000000000000000"}),
    [](const auto& row) { return std::string(row.param.name); });

TEST(NaturalOrderEquality, CaseAccentsAndPaddingCompareEqual) {
    EXPECT_TRUE(std::is_eq(naturalCompare("safari", "SAFARI")));
    EXPECT_TRUE(std::is_eq(naturalCompare("Résumé", "Resume")));
    EXPECT_TRUE(std::is_eq(naturalCompare("App 01", "App 1")));
    EXPECT_TRUE(std::is_eq(naturalCompare("", "")));
    EXPECT_TRUE(std::is_lt(naturalCompare("", "a")));
}

}  // namespace
}  // namespace ostrelle
