#include "recording_text.h"

#include <cmath>
#include <type_traits>

namespace ostrelle::examples {

double fourDecimals(double value) {
    constexpr double scale = 10000.0;
    const double rounded = std::round(value * scale) / scale;
    return rounded == 0 ? 0.0 : rounded;  // never "-0.0"
}

std::string lineText(const RecordingLine& line) {
    return std::visit(
        [](const auto& item) -> std::string {
            using Item = std::decay_t<decltype(item)>;
            if constexpr (std::is_same_v<Item, CommentLine>) {
                return "# " + item.text;
            } else if constexpr (std::is_same_v<Item, RecordedClick>) {
                return recordingLine(RecordedClick{fourDecimals(item.time), item.overOwnWindow});
            } else {
                RecordedFrame frame{fourDecimals(item.time), {}};
                for (const Contact& c : item.contacts) {
                    frame.contacts.push_back({c.id, fourDecimals(c.x), fourDecimals(c.y)});
                }
                return recordingLine(frame);
            }
        },
        line);
}

std::string recordingText(const std::string& description, const std::vector<std::string>& expected,
                          const std::vector<RecordingLine>& lines) {
    std::string text = "# " + description + "\n";
    for (const std::string& id : expected) text += "# expect: " + id + "\n";
    for (const RecordingLine& line : lines) text += lineText(line) + "\n";
    return text;
}

}  // namespace ostrelle::examples
