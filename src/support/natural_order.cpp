#include "support/natural_order.h"

#include <string>

#include "support/unicode_text.h"

namespace ostrelle {
namespace {

bool isDigit(char32_t c) {
    return c >= '0' && c <= '9';
}

// Compares the digit runs that start at i and j by value and moves both past their run.
std::weak_ordering compareNumbers(const std::u32string& a, std::size_t& i, const std::u32string& b,
                                  std::size_t& j) {
    while (i < a.size() && a[i] == '0' && i + 1 < a.size() && isDigit(a[i + 1])) ++i;
    while (j < b.size() && b[j] == '0' && j + 1 < b.size() && isDigit(b[j + 1])) ++j;
    std::size_t endA = i;
    std::size_t endB = j;
    while (endA < a.size() && isDigit(a[endA])) ++endA;
    while (endB < b.size() && isDigit(b[endB])) ++endB;
    // Without leading zeros the longer run is the larger number; equal lengths compare digit by digit.
    std::weak_ordering order = (endA - i) <=> (endB - j);
    for (std::size_t k = 0; order == 0 && k < endA - i; ++k) order = a[i + k] <=> b[j + k];
    i = endA;
    j = endB;
    return order;
}

}  // namespace

std::weak_ordering naturalCompare(std::string_view a, std::string_view b) {
    const std::u32string left = decodeUTF8(searchFolded(a));
    const std::u32string right = decodeUTF8(searchFolded(b));
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < left.size() && j < right.size()) {
        if (isDigit(left[i]) && isDigit(right[j])) {
            const std::weak_ordering order = compareNumbers(left, i, right, j);
            if (order != 0) return order;
            continue;
        }
        if (left[i] != right[j]) return left[i] <=> right[j];
        ++i;
        ++j;
    }
    return (left.size() - i) <=> (right.size() - j);
}

}  // namespace ostrelle
