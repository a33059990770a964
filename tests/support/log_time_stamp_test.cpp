#include "support/log_time_stamp.h"

#include <gtest/gtest.h>

namespace ostrelle {
namespace {

using namespace std::chrono;
using namespace std::chrono_literals;

SystemTime at(sys_days day, nanoseconds time) {
    return time_point_cast<SystemTime::duration>(day + time);
}

// Every stamp reads back as the millisecond it was printed for, whatever the offset.
TEST(LogTimeStamp, PrintsLocalTimeWithTruncatedMillisecondsAndTheOffsetAndReadsItBack) {
    // Sub-millisecond noise that must not round the milliseconds up.
    const SystemTime sample = at(2026y / March / 14, 8h + 26min + 53s + 589ms + 999us);
    struct Row {
        SystemTime time;
        seconds offset;
        const char* stamp;
    };
    const Row rows[] = {
        {sample, 0s, "2026-03-14T08:26:53.589Z"},                // UTC is Z
        {sample, 5h + 45min, "2026-03-14T14:11:53.589+05:45"},   // a quarter hour east
        {sample, -30min, "2026-03-14T07:56:53.589-00:30"},       // west, under an hour
        {sample, -9h - 30min, "2026-03-13T22:56:53.589-09:30"},  // back to the day before
        {at(2027y / January / 2, 3h + 4min + 5s + 6ms), 0s,
         "2027-01-02T03:04:05.006Z"},  // every field padded
        {at(2026y / December / 31, 23h + 59min + 59s + 999ms), 1h,
         "2027-01-01T00:59:59.999+01:00"},  // on into the next year
    };
    for (const Row& row : rows) {
        EXPECT_EQ(formatLogTimeStamp(row.time, row.offset), row.stamp) << row.stamp;
        EXPECT_EQ(parseLogTimeStamp(std::string(row.stamp) + " ERROR touch source failed"),
                  floor<milliseconds>(row.time))
            << row.stamp;
    }
}

TEST(LogTimeStamp, ReadsNothingButAStampOfThatForm) {
    for (const char* text :
         {"", "ERROR", "2026-03-14T08:26:53Z", "2026-03-14 08:26:53.589Z", "2026-13-14T08:26:53.589Z",
          "2026-02-30T08:26:53.589Z", "2026-03-14T08:26:53.589", "2026-03-14T08:26:53.589+0100",
          "2026-03-14T08:26:53.589 Z", "2026-03-14T24:00:00.000Z"}) {
        EXPECT_FALSE(parseLogTimeStamp(text).has_value()) << text;
    }
}

}  // namespace
}  // namespace ostrelle
