#include "cli/store_session.h"

#include <fmt/format.h>

#include "cli/output.h"
#include "support/default_paths.h"

namespace ostrelle::cli {
namespace {

std::string bindingsCount(std::size_t count) {
    return fmt::format("{} binding{}", count, count == 1 ? "" : "s");
}

// What a seeded store starts with: "the 4 default bindings".
std::string seedText(const BindingStore& store) {
    const std::size_t count = store.bindings().size();
    return fmt::format("the {} default binding{}", count, count == 1 ? "" : "s");
}

}  // namespace

std::filesystem::path bindingsFile(const ParsedArguments& parsed) {
    if (const auto given = parsed.value(fileOption)) return *given;
    return defaultBindingsPath(processEnvironment());
}

std::optional<LoadReport> describeLoad(const BindingStore& store) {
    const BindingStoreLoad& load = store.load();
    const std::string file = store.fileURL().string();
    const std::string seed = seedText(store);
    switch (load.outcome) {
        case BindingStoreLoad::Outcome::seeded:
            return LoadReport{LoadReport::Severity::note,
                              fmt::format("{} did not exist; started it with {}", file, seed)};
        case BindingStoreLoad::Outcome::setAside:
            if (load.setAside) {
                return LoadReport{LoadReport::Severity::warning,
                                  fmt::format("{} could not be read ({}); moved it to {} and started over "
                                              "with {}",
                                              file, load.problem, load.setAside->string(), seed)};
            }
            return LoadReport{LoadReport::Severity::warning,
                              fmt::format("{} could not be read ({}) nor moved aside; started over with {}",
                                          file, load.problem, seed)};
        case BindingStoreLoad::Outcome::loaded:
            break;
    }
    if (load.dropped == 0) return std::nullopt;
    const std::string dropped = fmt::format("dropped {} of {} whose gesture or action no longer exists",
                                            bindingsCount(load.dropped), file);
    if (load.backup) {
        return LoadReport{LoadReport::Severity::warning, fmt::format("{}; the previous file was copied to {}",
                                                                     dropped, load.backup->string())};
    }
    return LoadReport{LoadReport::Severity::warning,
                      fmt::format("{}; the previous file could not be backed up", dropped)};
}

std::unique_ptr<BindingStore> openStore(const std::filesystem::path& file, bool launchedBefore) {
    auto store = std::make_unique<BindingStore>(file, launchedBefore);
    if (const auto report = describeLoad(*store)) {
        switch (report->severity) {
            case LoadReport::Severity::note:
                printNote(report->message);
                break;
            case LoadReport::Severity::warning:
                printWarning(report->message);
                break;
        }
    }
    return store;
}

}  // namespace ostrelle::cli
