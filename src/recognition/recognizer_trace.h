#pragma once

// Rejection lines for the recognizer's diagnostic sink. Each is composed only when a sink is set,
// so normal operation never formats a string on the per-frame path.
#include <fmt/format.h>

#include <cstddef>
#include <utility>

#include "recognition/gesture_recognizer.h"

namespace ostrelle::recognizer_trace {

template <typename... Args>
void line(fmt::format_string<Args...> format, Args&&... args) {
    if (GestureRecognizer::trace) GestureRecognizer::trace(fmt::format(format, std::forward<Args>(args)...));
}

// One- and two-finger sessions are everyday pointing and scrolling: rejecting them is not news.
template <typename... Args>
void tapRejected(int fingers, fmt::format_string<Args...> reason, Args&&... args) {
    if (fingers < 3 || !GestureRecognizer::trace) return;
    GestureRecognizer::trace(
        fmt::format("{}-finger tap rejected: {}", fingers, fmt::format(reason, std::forward<Args>(args)...)));
}

template <typename... Args>
void restTapRejected(std::size_t fingers, fmt::format_string<Args...> reason, Args&&... args) {
    if (!GestureRecognizer::trace) return;
    GestureRecognizer::trace(fmt::format("rest+tap ({} fingers) rejected: {}", fingers,
                                         fmt::format(reason, std::forward<Args>(args)...)));
}

}  // namespace ostrelle::recognizer_trace
