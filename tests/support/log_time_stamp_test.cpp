#include "support/log_time_stamp.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

// 2026-03-14 08:26:53.589 UTC, plus some sub-millisecond noise that must not show.
SystemTime sampleTime() {
    return time_point_cast<SystemTime::duration>(sys_days{2026y / March / 14} + 8h + 26min + 53s + 589ms +
                                                 999us);
}

struct StampCase {
    const char* name;
    seconds offset;
    const char* expected;

    // Names the row in test output instead of dumping its bytes.
    friend void PrintTo(const StampCase& row, std::ostream* out) { *out << row.name; }
};

class LogTimeStampFormat : public ::testing::TestWithParam<StampCase> {};

TEST_P(LogTimeStampFormat, PrintsLocalTimeWithMillisecondsAndOffset) {
    EXPECT_EQ(formatLogTimeStamp(sampleTime(), GetParam().offset), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Offsets, LogTimeStampFormat,
    ::testing::Values(StampCase{"zeroIsZ", 0s, "2026-03-14T08:26:53.589Z"},
                      StampCase{"eastOneHour", 1h, "2026-03-14T09:26:53.589+01:00"},
                      StampCase{"westFiveHours", -5h, "2026-03-14T03:26:53.589-05:00"},
                      StampCase{"halfHourEast", 5h + 30min, "2026-03-14T13:56:53.589+05:30"},
                      StampCase{"quarterHourEast", 5h + 45min, "2026-03-14T14:11:53.589+05:45"},
                      StampCase{"pastMidnightEast", 14h, "2026-03-14T22:26:53.589+14:00"},
                      StampCase{"backToYesterday", -9h - 30min, "2026-03-13T22:56:53.589-09:30"},
                      StampCase{"westUnderAnHour", -30min, "2026-03-14T07:56:53.589-00:30"}),
    [](const ::testing::TestParamInfo<StampCase>& row) { return std::string(row.param.name); });

TEST(LogTimeStamp, PadsEveryFieldAndTruncatesMilliseconds) {
    const auto time =
        time_point_cast<SystemTime::duration>(sys_days{2027y / January / 2} + 3h + 4min + 5s + 6ms);
    EXPECT_EQ(formatLogTimeStamp(time, 0s), "2027-01-02T03:04:05.006Z");
    EXPECT_EQ(formatLogTimeStamp(time + 999us, 0s), "2027-01-02T03:04:05.006Z");
    EXPECT_EQ(formatLogTimeStamp(time - 6ms, 0s), "2027-01-02T03:04:05.000Z");
    // The last moment of a year, moved into the next one by the offset.
    const auto lastMoment =
        time_point_cast<SystemTime::duration>(sys_days{2026y / December / 31} + 23h + 59min + 59s + 999ms);
    EXPECT_EQ(formatLogTimeStamp(lastMoment, 1h), "2027-01-01T00:59:59.999+01:00");
}

TEST(LogTimeStamp, ParsesWhatItPrints) {
    for (const seconds offset : {0s, seconds{1h}, seconds{-5h}, seconds{5h + 45min}, seconds{-30min}}) {
        const auto stamp = formatLogTimeStamp(sampleTime(), offset);
        const auto parsed = parseLogTimeStamp(stamp + " ERROR touch source failed");
        ASSERT_TRUE(parsed.has_value()) << stamp;
        EXPECT_EQ(*parsed, floor<milliseconds>(sampleTime())) << stamp;
    }
}

TEST(LogTimeStamp, RejectsOtherText) {
    for (const char* text :
         {"", "ERROR", "2026-03-14T08:26:53Z", "2026-03-14 08:26:53.589Z", "2026-13-14T08:26:53.589Z",
          "2026-02-30T08:26:53.589Z", "2026-03-14T08:26:53.589", "2026-03-14T08:26:53.589+0100",
          "2026-03-14T08:26:53.589 Z", "2026-03-14T24:00:00.000Z"}) {
        EXPECT_FALSE(parseLogTimeStamp(text).has_value()) << text;
    }
}

}  // namespace
}  // namespace ostrelle
