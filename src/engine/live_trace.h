#pragma once

#include <vector>

#include "gestures/custom_shape.h"
#include "support/observers.h"

namespace ostrelle {

// The strokes being drawn right now, for the trackpad preview while the user draws a shape.
class LiveTrace {
  public:
    const std::vector<Stroke>& strokes() const { return strokes_; }
    void setStrokes(std::vector<Stroke> strokes) {
        strokes_ = std::move(strokes);
        observers.notify();
    }

    ObserverList observers;

  private:
    std::vector<Stroke> strokes_;
};

}  // namespace ostrelle
