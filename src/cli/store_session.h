#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "cli/argument_parser.h"
#include "store/binding_store.h"

namespace ostrelle::cli {

constexpr std::string_view fileOption = "--file";
constexpr std::string_view launchedBeforeFlag = "--launched-before";

// The bindings file a command works on: the one given with --file, or the platform's own.
std::filesystem::path bindingsFile(const ParsedArguments& parsed);

// One line on what loading did beyond reading the file (seeded, set a bad file aside, dropped
// bindings), or nothing when it just read it. The store itself stays silent; a command line
// user should not have a file moved or rewritten without being told.
struct LoadReport {
    enum class Severity { note, warning };
    Severity severity = Severity::note;
    std::string message;
};
std::optional<LoadReport> describeLoad(const BindingStore& store);

// Opens (loads, seeds or repairs) the store and prints describeLoad's line on standard error.
std::unique_ptr<BindingStore> openStore(const std::filesystem::path& file, bool launchedBefore);

}  // namespace ostrelle::cli
