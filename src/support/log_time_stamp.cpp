#include "support/log_time_stamp.h"

#include <fmt/format.h>

#include <cstdint>
#include <cstdlib>

namespace ostrelle {
namespace {

using namespace std::chrono;

std::string offsetText(seconds utcOffset) {
    if (utcOffset == seconds{0}) return "Z";
    const char sign = utcOffset < seconds{0} ? '-' : '+';
    // Seconds of an offset have no place in the stamp; historical zones that had them lose them.
    const auto minutesAway = std::llabs(duration_cast<minutes>(utcOffset).count());
    return fmt::format("{}{:02}:{:02}", sign, minutesAway / 60, minutesAway % 60);
}

// A small cursor over the stamp; every read fails the whole parse when the text does not fit.
class StampReader {
  public:
    explicit StampReader(std::string_view text) : text_(text) {}

    bool number(int digits, int& value) {
        if (pos_ + static_cast<std::size_t>(digits) > text_.size()) return false;
        value = 0;
        for (int i = 0; i < digits; ++i) {
            const char c = text_[pos_++];
            if (c < '0' || c > '9') return false;
            value = value * 10 + (c - '0');
        }
        return true;
    }

    bool literal(char expected) {
        if (pos_ >= text_.size() || text_[pos_] != expected) return false;
        ++pos_;
        return true;
    }

    std::optional<char> next() {
        if (pos_ >= text_.size()) return std::nullopt;
        return text_[pos_++];
    }

  private:
    std::string_view text_;
    std::size_t pos_ = 0;
};

}  // namespace

std::string formatLogTimeStamp(SystemTime time, seconds utcOffset) {
    const auto local = floor<milliseconds>(time) + utcOffset;
    const auto day = floor<days>(local);
    const year_month_day date{day};
    const hh_mm_ss clock{local - day};
    return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}.{:03}{}", static_cast<int>(date.year()),
                       static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                       clock.hours().count(), clock.minutes().count(), clock.seconds().count(),
                       clock.subseconds().count(), offsetText(utcOffset));
}

std::optional<SystemTime> parseLogTimeStamp(std::string_view text) {
    StampReader reader(text);
    int year = 0, month = 0, dayOfMonth = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
    const bool fits = reader.number(4, year) && reader.literal('-') && reader.number(2, month) &&
                      reader.literal('-') && reader.number(2, dayOfMonth) && reader.literal('T') &&
                      reader.number(2, hour) && reader.literal(':') && reader.number(2, minute) &&
                      reader.literal(':') && reader.number(2, second) && reader.literal('.') &&
                      reader.number(3, millisecond);
    if (!fits) return std::nullopt;
    const year_month_day date{std::chrono::year{year}, std::chrono::month{static_cast<unsigned>(month)},
                              std::chrono::day{static_cast<unsigned>(dayOfMonth)}};
    if (!date.ok() || hour > 23 || minute > 59 || second > 60) return std::nullopt;

    seconds offset{0};
    const auto zone = reader.next();
    if (!zone) return std::nullopt;
    if (*zone == '+' || *zone == '-') {
        int offsetHours = 0, offsetMinutes = 0;
        if (!reader.number(2, offsetHours) || !reader.literal(':') || !reader.number(2, offsetMinutes)) {
            return std::nullopt;
        }
        offset = hours{offsetHours} + minutes{offsetMinutes};
        if (*zone == '-') offset = -offset;
    } else if (*zone != 'Z') {
        return std::nullopt;
    }

    const auto local =
        sys_days{date} + hours{hour} + minutes{minute} + seconds{second} + milliseconds{millisecond};
    return time_point_cast<SystemTime::duration>(local - offset);
}

}  // namespace ostrelle
