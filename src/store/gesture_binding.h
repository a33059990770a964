#pragma once

#include <optional>
#include <string>

#include "actions/action_ref.h"
#include "gestures/gesture.h"

namespace ostrelle {

// One saved gesture-to-action binding.
struct GestureBinding {
    std::string id;  // a UUID in canonical upper-case text
    Gesture gesture;
    ActionRef action;
    double createdAt = 0;  // seconds since 2001-01-01 00:00:00 UTC

    // A new binding with a fresh id, made now.
    static GestureBinding make(Gesture gesture, ActionRef action, double createdAt);

    friend bool operator==(const GestureBinding&, const GestureBinding&) = default;
};

std::size_t hashOf(const GestureBinding& binding);

}  // namespace ostrelle

template <>
struct std::hash<ostrelle::GestureBinding> {
    std::size_t operator()(const ostrelle::GestureBinding& b) const noexcept { return ostrelle::hashOf(b); }
};
