#pragma once

#include <memory>

#include "engine/touch_source.h"
#include "store/binding_store.h"
#include "support/main_queue.h"

namespace ostrelle::cli {

// The live touchpad source of this computer.
std::unique_ptr<TouchSource> makeTouchpadSource(MainQueue& queue);

// The bindings file changed on disk (another process wrote it): bring the store up to date.
void refreshBindings(BindingStore& store);

}  // namespace ostrelle::cli
