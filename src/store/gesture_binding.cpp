#include "store/gesture_binding.h"

#include "support/point.h"
#include "support/uuid.h"

namespace ostrelle {

GestureBinding GestureBinding::make(Gesture gesture, ActionRef action, double createdAt) {
    return {newUUIDString(), std::move(gesture), std::move(action), createdAt};
}

std::size_t hashOf(const GestureBinding& binding) {
    std::size_t seed = std::hash<std::string>{}(binding.id);
    hashCombine(seed, hashOf(binding.gesture));
    hashCombine(seed, hashOf(binding.action));
    hashCombine(seed, std::hash<double>{}(binding.createdAt));
    return seed;
}

}  // namespace ostrelle
