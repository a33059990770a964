#pragma once

#include <string>
#include <vector>

#include "gestures/gesture.h"
#include "performer.h"

namespace ostrelle::examples {

// Turns the frames of a drawing into a custom shape the way the shape editor records one: the
// centroid of the hand while every finger is down, thinned to steps of the recognizer's path
// step, and each finger's trail.
CustomShape shapeFromFrames(int fingers, const std::vector<RecordedFrame>& frames);

// The gesture of a shape under a fixed UUID, so that regenerating the files changes nothing.
Gesture customGesture(CustomShape shape, const std::string& name, const std::string& uuid);

// The shapes file: a JSON array of {"id", "custom": {"name", "fingers", "path", "strokes"}}.
std::string shapesFileText(const std::vector<Gesture>& gestures);

}  // namespace ostrelle::examples
