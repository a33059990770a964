#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gestures/custom_shape.h"
#include "gestures/motion.h"

namespace ostrelle {

struct GestureDef;

// The identity of a gesture: its id string, plus the drawn shape for a user-drawn gesture.
// Ids are compared whole; nothing parses them back into parts.
struct Gesture {
    std::string id;
    std::optional<CustomShape> custom;

    Gesture() = default;
    explicit Gesture(std::string id_) : id(std::move(id_)) {}

    // The catalog's definition, or one made on the spot for a drawn shape; absent for an unknown id.
    std::optional<GestureDef> def() const;
    std::string displayName() const;
    int fingers() const;
    std::string hint() const;
    std::int64_t sortKey() const;

    static Gesture newCustom(const CustomShape& shape);
    static std::string genericID(int fingers, Motion motion, std::optional<SwipeDirection> direction);
    static std::string_view word(int fingers);
    static std::string fingersLabel(int fingers);
    static const std::vector<Gesture>& all();

    friend bool operator==(const Gesture&, const Gesture&) = default;
};

std::size_t hashOf(const Gesture& gesture);

}  // namespace ostrelle

template <>
struct std::hash<ostrelle::Gesture> {
    std::size_t operator()(const ostrelle::Gesture& gesture) const noexcept {
        return ostrelle::hashOf(gesture);
    }
};
