#pragma once

#include <functional>
#include <optional>
#include <string>

#include "actions/dry_run_system_port.h"
#include "engine/gesture_engine.h"

namespace ostrelle::cli {

// What the engine is doing, as JSON lines on standard output, each with the time `now` gives:
// {"t", "gesture"} for every recognized gesture, {"t", "run"} for every binding run,
// {"t", "event"} for every effect the dry-run system records, {"t", "detection"} in capture mode,
// and {"t", "log", "message"} for every log entry, while the object lives (it unhooks itself). One replay of
// a file and the service's dry run print the same lines.
class EngineLines {
  public:
    using Clock = std::function<double()>;

    EngineLines(GestureEngine& engine, DryRunSystemPort& system, Clock now);
    ~EngineLines();
    EngineLines(const EngineLines&) = delete;
    EngineLines& operator=(const EngineLines&) = delete;

  private:
    GestureEngine& engine_;
    DryRunSystemPort& system_;
    Clock now_;
    ObserverList::Token detections_ = 0;
    std::optional<std::string> shownDetection_;
};

}  // namespace ostrelle::cli
