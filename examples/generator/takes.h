#pragma once

#include <vector>

#include "gestures/motion.h"
#include "performer.h"
#include "support/point.h"

namespace ostrelle::examples {

enum class Side { left, right, between };

// Builders of realistic takes, each starting a moment after the performer's clock. Landings
// and lifts are staggered and durations vary from take to take, always inside what the
// recognizer accepts for the gesture meant.

// All fingers land, rest briefly, and lift together.
Take tap(Performer& performer, int fingers, Point centre);
// Fingers land, the pad is pressed down once, then they lift.
Take click(Performer& performer, int fingers, Point centre);
// Fingers land, pause, slide together over `distance`, and lift at the end of the motion.
Take swipe(Performer& performer, int fingers, Point centre, SwipeDirection direction, double distance);
// One finger (two for three-finger rest taps) rests; another taps on the given side.
Take restTap(Performer& performer, int fingers, Point restCentre, Side side);
// One finger rests; another lands beside it (left or right) and slides up or down.
Take restSwipe(Performer& performer, Point rest, Side side, SwipeDirection direction);
// The hand's centre follows a drawn figure (a polyline), corner to corner.
Take drawing(Performer& performer, int fingers, const std::vector<Point>& figure, double speed);
// One finger moves the pointer.
Take pointerMove(Performer& performer, Point from, Point to);
// Two fingers scroll the page together.
Take scroll(Performer& performer, Point centre, SwipeDirection direction, double distance);

}  // namespace ostrelle::examples
