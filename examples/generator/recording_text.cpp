#include "recording_text.h"

#include <fmt/format.h>

#include <type_traits>

namespace ostrelle::examples {

std::string shortNumber(double value) {
    std::string text = fmt::format("{:.4f}", value);
    while (text.back() == '0') text.pop_back();
    if (text.back() == '.') text.pop_back();
    if (text == "-0") text = "0";
    return text;
}

std::string lineText(const RecordingLine& line) {
    return std::visit(
        [](const auto& item) -> std::string {
            using Item = std::decay_t<decltype(item)>;
            if constexpr (std::is_same_v<Item, CommentLine>) {
                return "# " + item.text;
            } else if constexpr (std::is_same_v<Item, ClickLine>) {
                return fmt::format(R"({{"t": {}, "click": false}})", shortNumber(item.time));
            } else {
                std::string touches;
                for (const Contact& c : item.touches) {
                    if (!touches.empty()) touches += ", ";
                    touches += fmt::format("[{}, {}, {}]", c.id, shortNumber(c.x), shortNumber(c.y));
                }
                return fmt::format(R"({{"t": {}, "touches": [{}]}})", shortNumber(item.time), touches);
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
