#include "gestures/kde_input_config.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/text.h"

namespace ostrelle {
namespace {

// KWin keeps one group per input device, named by the nested group path
// Libinput / vendor id / product id / device name.
constexpr std::string_view libinputGroup = "Libinput";
constexpr std::size_t deviceGroupDepth = 4;
constexpr std::string_view tapToClickKey = "TapToClick";

// The components of a group header "[a][b][c]"; nothing when the line is not one. Trailing
// option markers such as "[$i]" (immutable) are not part of the name.
std::optional<std::vector<std::string>> groupPath(std::string_view line) {
    std::vector<std::string> path;
    while (!line.empty()) {
        if (line.front() != '[') return std::nullopt;
        const auto close = line.find(']');
        if (close == std::string_view::npos) return std::nullopt;
        path.emplace_back(line.substr(1, close - 1));
        line.remove_prefix(close + 1);
    }
    while (!path.empty() && path.back().starts_with('$')) path.pop_back();
    if (path.empty()) return std::nullopt;
    return path;
}

bool isDeviceGroup(const std::vector<std::string>& path) {
    return path.size() == deviceGroupDepth && path.front() == libinputGroup;
}

// KConfig reads true, on, yes and non-zero numbers as true, in any case.
bool isTrue(std::string_view value) {
    const std::string lower = asciiLowercased(value);
    if (lower == "true" || lower == "on" || lower == "yes") return true;
    return !lower.empty() && std::ranges::all_of(lower, [](unsigned char c) { return std::isdigit(c); }) &&
           lower.find_first_not_of('0') != std::string::npos;
}

}  // namespace

bool kdeTapToClick(std::string_view kcminputrc) {
    // The last value in a group wins, and a group may appear more than once.
    std::map<std::vector<std::string>, bool> tapToClickByDevice;
    std::optional<std::vector<std::string>> group;
    while (!kcminputrc.empty()) {
        const auto end = kcminputrc.find('\n');
        std::string line = trimSpacesAndTabs(kcminputrc.substr(0, end));
        kcminputrc.remove_prefix(end == std::string_view::npos ? kcminputrc.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line = trimSpacesAndTabs(line.substr(0, line.size() - 1));
        if (line.empty() || line.front() == '#' || line.front() == ';') continue;
        if (line.front() == '[') {
            group = groupPath(line);
            continue;
        }
        const auto equals = line.find('=');
        if (!group || !isDeviceGroup(*group) || equals == std::string::npos) continue;
        std::string key = trimSpacesAndTabs(std::string_view(line).substr(0, equals));
        // A key may carry options ("TapToClick[$i]") or a locale; the name is before them.
        key = key.substr(0, key.find('['));
        if (key != tapToClickKey) continue;
        tapToClickByDevice[*group] = isTrue(trimSpacesAndTabs(std::string_view(line).substr(equals + 1)));
    }
    return std::ranges::any_of(tapToClickByDevice, [](const auto& entry) { return entry.second; });
}

}  // namespace ostrelle
