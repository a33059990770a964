// Reading sysfs capability bitmaps, which tell a touchpad from other devices without opening it.
#include "platform/linux/input_capabilities.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

TEST(CapabilityBits, ReadsWordsMostSignificantFirst) {
    struct Row {
        const char* name;
        const char* text;
        std::vector<unsigned> set;
        std::vector<unsigned> clear;
    };
    const Row rows[] = {
        {"one word", "5\n", {0, 2}, {1, 3, 64}},
        {"empty bitmap", "0", {}, {0, 63, 64}},
        {"touchpad keys", "6420 30000 0 0 0 0", {0x145, 0x14a, 0x14d, 0x14e, 0x110, 0x111}, {0x112, 0x14b}},
        {"top bit of a word", "1 8000000000000000", {63, 64}, {62, 65}},
        {"abs of a clickpad", "2e0800000000003", {0, 1, 0x2f, 0x35, 0x36, 0x37, 0x39}, {2, 0x38}},
    };
    for (const Row& row : rows) {
        const auto bits = CapabilityBits::parse(row.text);
        ASSERT_TRUE(bits.has_value()) << row.name;
        for (unsigned bit : row.set) EXPECT_TRUE(bits->has(bit)) << row.name << " bit " << bit;
        for (unsigned bit : row.clear) EXPECT_FALSE(bits->has(bit)) << row.name << " bit " << bit;
    }
    for (const char* bad : {"", " \n", "12 zz", "1  2", "10000000000000000", "-1"})
        EXPECT_FALSE(CapabilityBits::parse(bad).has_value()) << '"' << bad << '"';
}

}  // namespace
}  // namespace ostrelle
