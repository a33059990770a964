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

namespace {

void printTagged(std::string_view tag, std::string_view message) {
    std::string line(tag);
    line += ": ";
    line += message;
    line += '\n';
    std::fwrite(line.data(), 1, line.size(), stderr);
}

}  // namespace

void printError(std::string_view message) {
    printTagged("error", message);
}

void printWarning(std::string_view message) {
    printTagged("warning", message);
}

void printNote(std::string_view message) {
    printTagged("note", message);
}

}  // namespace ostrelle::cli
