#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "gestures/gesture.h"
#include "performer.h"

namespace ostrelle::examples {

// One bundled recording: what it shows, and how the hands perform it.
struct ExampleScript {
    std::string stem;  // the file is examples/<stem>.jsonl
    std::string description;
    std::uint64_t seed;
    void (*perform)(Performer& performer);
    // Custom gestures replayed with it (written to examples/<stem>.shapes.json); may be null.
    std::vector<Gesture> (*shapes)();
};

const std::vector<ExampleScript>& exampleScripts();

}  // namespace ostrelle::examples
