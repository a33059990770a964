#include "app/release_version.h"

#include <cctype>
#include <vector>

namespace ostrelle::app {
namespace {

struct Part {
    bool isNumber = false;
    std::string_view text;  // digits without leading zeros, or a lower-case-insensitive tag
};

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}
bool isLetter(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) != 0;
}

std::vector<Part> split(std::string_view version) {
    if (!version.empty() && (version.front() == 'v' || version.front() == 'V')) version.remove_prefix(1);
    std::vector<Part> parts;
    std::size_t i = 0;
    while (i < version.size()) {
        const std::size_t start = i;
        if (isDigit(version[i])) {
            while (i < version.size() && isDigit(version[i])) ++i;
            std::string_view digits = version.substr(start, i - start);
            // Compared as text so that no number is too long; leading zeros would spoil that.
            while (digits.size() > 1 && digits.front() == '0') digits.remove_prefix(1);
            parts.push_back({true, digits});
        } else if (isLetter(version[i])) {
            while (i < version.size() && isLetter(version[i])) ++i;
            parts.push_back({false, version.substr(start, i - start)});
        } else {
            ++i;
        }
    }
    return parts;
}

std::strong_ordering compareNumbers(std::string_view left, std::string_view right) {
    if (left.size() != right.size()) return left.size() <=> right.size();
    return left.compare(right) <=> 0;
}

std::strong_ordering compareTags(std::string_view left, std::string_view right) {
    for (std::size_t i = 0; i < left.size() && i < right.size(); ++i) {
        const int a = std::tolower(static_cast<unsigned char>(left[i]));
        const int b = std::tolower(static_cast<unsigned char>(right[i]));
        if (a != b) return a <=> b;
    }
    return left.size() <=> right.size();
}

// What the longer version's extra parts make of it: zeros change nothing, a tag marks a
// pre-release (below), any other number a later release (above).
std::strong_ordering compareRest(const std::vector<Part>& parts, std::size_t from) {
    for (std::size_t i = from; i < parts.size(); ++i) {
        if (!parts[i].isNumber) return std::strong_ordering::less;
        if (parts[i].text != "0") return std::strong_ordering::greater;
    }
    return std::strong_ordering::equal;
}

}  // namespace

std::strong_ordering compareVersions(std::string_view left, std::string_view right) {
    const std::vector<Part> a = split(left);
    const std::vector<Part> b = split(right);
    std::size_t i = 0;
    for (; i < a.size() && i < b.size(); ++i) {
        if (a[i].isNumber != b[i].isNumber) {
            // "2.0.1" against "2.0b1": a further release number is above a pre-release tag.
            return a[i].isNumber ? std::strong_ordering::greater : std::strong_ordering::less;
        }
        const auto order =
            a[i].isNumber ? compareNumbers(a[i].text, b[i].text) : compareTags(a[i].text, b[i].text);
        if (order != 0) return order;
    }
    if (i < a.size()) return compareRest(a, i);
    if (i < b.size()) return 0 <=> compareRest(b, i);
    return std::strong_ordering::equal;
}

}  // namespace ostrelle::app
