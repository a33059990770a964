#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ostrelle::cli {

// The known ids nearest to a mistyped one by edit distance (letter case ignored), nearest first;
// equally near ids keep their order in `known`. At most `count`.
std::vector<std::string> closestIDs(std::string_view wanted, const std::vector<std::string>& known,
                                    std::size_t count);

// `unknown gesture "3.tapp" (closest: 3.tap, 4.tap, 5.tap)`: what a refused id message says.
std::string unknownIDMessage(std::string_view what, std::string_view wanted,
                             const std::vector<std::string>& known);

}  // namespace ostrelle::cli
