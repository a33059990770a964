#include "gestures/gesture.h"

#include <array>
#include <limits>

#include "gestures/gesture_catalog.h"
#include "support/contract.h"
#include "support/text.h"
#include "support/uuid.h"

namespace ostrelle {
namespace {

constexpr std::string_view customNameFallback = "Custom gesture";
constexpr std::string_view unknownName = "Unknown gesture";

}  // namespace

std::optional<GestureDef> Gesture::def() const {
    if (custom) {
        std::string name = trimSpacesAndTabs(custom->name);
        if (name.empty()) name = customNameFallback;
        // The plural "fingers" stays even for one finger: the hint text is fixed.
        std::string hint = "Draw this shape with " + asciiLowercased(word(custom->fingers)) +
                           " fingers, any size, anywhere on the trackpad.";
        return GestureDef{id, std::move(name), custom->fingers, std::move(hint),
                          {}, std::nullopt,    std::nullopt};
    }
    if (const GestureDef* found = GestureCatalog::find(id)) return *found;
    return std::nullopt;
}

std::string Gesture::displayName() const {
    if (custom || GestureCatalog::find(id)) return def()->name;
    return std::string(unknownName);
}

int Gesture::fingers() const {
    if (custom) return custom->fingers;
    const GestureDef* found = GestureCatalog::find(id);
    return found ? found->fingers : 0;
}

std::string Gesture::hint() const {
    const auto definition = def();
    return definition ? definition->hint : std::string();
}

std::int64_t Gesture::sortKey() const {
    const auto& order = GestureCatalog::order();
    const auto it = order.find(id);
    // Anything the catalog does not list, custom shapes included, sorts after every built-in gesture.
    return it == order.end() ? std::numeric_limits<std::int64_t>::max() : it->second;
}

Gesture Gesture::newCustom(const CustomShape& shape) {
    Gesture gesture(std::to_string(shape.fingers) + ".custom." + newUUIDString());
    gesture.custom = shape;
    return gesture;
}

std::string Gesture::genericID(int fingers, Motion motion, std::optional<SwipeDirection> direction) {
    std::string id = std::to_string(fingers);
    id += '.';
    id += rawValue(motion);
    if (direction) {
        id += '.';
        id += rawValue(*direction);
    }
    return id;
}

std::string_view Gesture::word(int fingers) {
    static constexpr std::array<std::string_view, 5> words{"One", "Two", "Three", "Four", "Five"};
    if (fingers < 1 || fingers > 5) contractViolation("number word asked for a finger count outside 1 to 5");
    return words[static_cast<std::size_t>(fingers - 1)];
}

std::string Gesture::fingersLabel(int fingers) {
    return fingers == 1 ? "1 finger" : std::to_string(fingers) + " fingers";
}

const std::vector<Gesture>& Gesture::all() {
    return GestureCatalog::all();
}

std::size_t hashOf(const Gesture& gesture) {
    std::size_t seed = std::hash<std::string>{}(gesture.id);
    if (gesture.custom) {
        hashCombine(seed, 1);
        hashCombine(seed, hashOf(*gesture.custom));
    } else {
        hashCombine(seed, 0);
    }
    return seed;
}

}  // namespace ostrelle
