#include "cli/service/recording_file.h"

#include <fstream>
#include <vector>

#include "cli/commands.h"
#include "cli/recording_loop.h"

namespace ostrelle::cli {

std::optional<std::vector<RecordingEvent>> readRecording(const std::string& file) {
    std::optional<std::ifstream> input = openRecordingFile(file);
    if (!input) return std::nullopt;
    std::vector<RecordingEvent> events;
    if (forEachRecordedEvent(*input, file, std::nullopt,
                             [&](const RecordingEvent& event) { events.push_back(event); }) != exitSuccess)
        return std::nullopt;
    return events;
}

}  // namespace ostrelle::cli
