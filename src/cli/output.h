#pragma once

#include <nlohmann/json.hpp>
#include <string_view>

namespace ostrelle::cli {

// One JSON object per line on standard output, flushed at once so that a consumer sees every
// line before a later failure stops the program.
void printLine(const nlohmann::ordered_json& value);

// "error: <message>" on standard error.
void printError(std::string_view message);
// "warning: <message>" on standard error: something went wrong but the command went on.
void printWarning(std::string_view message);
// "note: <message>" on standard error: something the user should know, nothing wrong.
void printNote(std::string_view message);

}  // namespace ostrelle::cli
