#include "cli/recording_loop.h"

#include <fmt/format.h>

#include <stdexcept>

#include "cli/commands.h"
#include "cli/output.h"

namespace ostrelle::cli {

int forEachRecordedEvent(std::istream& input, const std::string& name,
                         const std::function<void(const RecordingEvent&)>& handle) {
    RecordingReader reader(input);
    try {
        while (const auto event = reader.next()) handle(*event);
    } catch (const RecordingError& error) {
        printError(fmt::format("{}:{}: {}", name, error.line(), error.problem()));
        return exitBadInput;
    } catch (const std::runtime_error& error) {
        printError(fmt::format("{}: {}", name, error.what()));
        return exitBadInput;
    }
    return exitSuccess;
}

}  // namespace ostrelle::cli
