#include "actions/action_ref.h"

#include "support/point.h"

namespace ostrelle {

std::size_t hashOf(const ActionRef& ref) {
    std::size_t seed = std::hash<std::string>{}(ref.appID);
    hashCombine(seed, std::hash<std::string>{}(ref.optionID));
    hashCombine(seed, ref.shortcut ? hashOf(*ref.shortcut) : 0);
    hashCombine(seed, ref.app ? std::hash<URL>{}(*ref.app) : 0);
    return seed;
}

}  // namespace ostrelle
