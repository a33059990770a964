#pragma once

#include <compare>
#include <string_view>

namespace ostrelle::app {

// Orders two release versions part by part as numbers: "1.10" is above "1.9", "1.2" equals
// "1.2.0", and a pre-release tag sorts below its release ("2.0b1" < "2.0rc1" < "2.0"). A leading
// "v" is ignored; any run of other characters only separates parts.
std::strong_ordering compareVersions(std::string_view left, std::string_view right);

}  // namespace ostrelle::app
