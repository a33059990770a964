#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace ostrelle::cli {

// One JSON object per line on standard output, flushed at once so that a consumer sees every
// line before a later failure stops the program.
void printLine(const nlohmann::ordered_json& value);

// "error: <message>" on standard error.
void printError(std::string_view message);

}  // namespace ostrelle::cli
