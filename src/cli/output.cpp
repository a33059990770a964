#include "cli/output.h"

#include <cstdio>
#include <string>

#include "support/json_line.h"

namespace ostrelle::cli {

void printLine(const nlohmann::ordered_json& value) {
    std::string line = jsonLine(value);
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stdout);
    std::fflush(stdout);
}

void printError(std::string_view message) {
    std::string line = "error: ";
    line += message;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace ostrelle::cli
