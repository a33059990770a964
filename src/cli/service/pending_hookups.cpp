#include "cli/service/pending_hookups.h"

namespace ostrelle::cli {
namespace {

// Stands in for the evdev touchpad source until it is linked here: starts, and delivers nothing.
class NoTouchpadSource final : public TouchSource {
  public:
    std::optional<TouchSourceError> start(FrameHandler, ClickHandler) override { return std::nullopt; }
    void stop() override {}
    EventCounts eventCounts() const override { return {}; }
};

}  // namespace

// LEAD: point this at EvdevTouchSource (platform/linux/evdev_touch_source.h) once it lands.
std::unique_ptr<TouchSource> makeTouchpadSource(MainQueue&) {
    return std::make_unique<NoTouchpadSource>();
}

}  // namespace ostrelle::cli
