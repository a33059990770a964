#include "cli/closest_ids.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cctype>
#include <numeric>

namespace ostrelle::cli {
namespace {

// Enough to show the likely one among its neighbours without burying it.
constexpr std::size_t suggestionCount = 3;

char folded(char c) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
}

// Levenshtein distance over one rolling row.
std::size_t editDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t above = row[j];
            const std::size_t substitution = diagonal + (folded(a[i - 1]) == folded(b[j - 1]) ? 0 : 1);
            row[j] = std::min({above + 1, row[j - 1] + 1, substitution});
            diagonal = above;
        }
    }
    return row[b.size()];
}

}  // namespace

std::vector<std::string> closestIDs(std::string_view wanted, const std::vector<std::string>& known,
                                    std::size_t count) {
    struct Candidate {
        std::size_t distance;
        std::size_t index;
    };
    std::vector<Candidate> candidates;
    candidates.reserve(known.size());
    for (std::size_t i = 0; i < known.size(); ++i) candidates.push_back({editDistance(wanted, known[i]), i});
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.distance < b.distance; });
    std::vector<std::string> nearest;
    for (std::size_t i = 0; i < std::min(count, candidates.size()); ++i) {
        nearest.push_back(known[candidates[i].index]);
    }
    return nearest;
}

std::string unknownIDMessage(std::string_view what, std::string_view wanted,
                             const std::vector<std::string>& known) {
    const std::vector<std::string> nearest = closestIDs(wanted, known, suggestionCount);
    if (nearest.empty()) return fmt::format("unknown {} \"{}\"", what, wanted);
    return fmt::format("unknown {} \"{}\" (closest: {})", what, wanted, fmt::join(nearest, ", "));
}

}  // namespace ostrelle::cli
