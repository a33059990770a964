#pragma once

#include <memory>

#include "engine/touch_source.h"
#include "support/main_queue.h"

namespace ostrelle::cli {

// The live touchpad source of this computer.
std::unique_ptr<TouchSource> makeTouchpadSource(MainQueue& queue);

}  // namespace ostrelle::cli
