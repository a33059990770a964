#include "cli/engine_lines.h"

#include <optional>
#include <string>

#include "actions/recorded_event.h"
#include "cli/output.h"
#include "support/log.h"

namespace ostrelle::cli {

using Line = nlohmann::ordered_json;

EngineLines::EngineLines(GestureEngine& engine, DryRunSystemPort& system, Clock now)
    : engine_(engine), system_(system), now_(std::move(now)) {
    const auto timed = [this] {
        Line line = Line::object();
        line["t"] = now_();
        return line;
    };
    Log::setListener([timed](Log::Level level, std::string_view message) {
        Line line = timed();
        line["log"] = level == Log::Level::error ? "ERROR" : "WARN";
        line["message"] = std::string(message);
        printLine(line);
    });
    system.onRecord = [timed](const RecordedEvent& event) {
        Line line = timed();
        line["event"] = toJSON(event);
        printLine(line);
    };
    engine.hooks.recognized = [timed](const Gesture& gesture) {
        Line line = timed();
        line["gesture"] = gesture.id;
        printLine(line);
    };
    engine.hooks.run = [timed](const ActionRef& action) {
        Line line = timed();
        line["run"] = action.appID + "/" + action.optionID;
        printLine(line);
    };
    // The state lives here: the observer list calls copies of its observers.
    detections_ = engine.observers.add([this, timed] {
        const auto& detection = engine_.lastDetection();
        if (!detection || detection->id == shownDetection_) return;
        shownDetection_ = detection->id;
        Line line = timed();
        line["detection"] = detection->gesture.id;
        printLine(line);
    });
}

EngineLines::~EngineLines() {
    Log::setListener(nullptr);
    system_.onRecord = nullptr;
    engine_.hooks = {};
    engine_.observers.remove(detections_);
}

}  // namespace ostrelle::cli
