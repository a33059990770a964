#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "actions/action_host.h"
#include "actions/action_kind.h"
#include "actions/action_ref.h"

namespace ostrelle {

// One choice in the action list.
struct ActionOption {
    std::string id;  // unique within its group
    std::string label;
    std::string keys;  // the shortcut as the list shows it; may be empty
    ActionKind kind;
    std::optional<std::string> note;  // a hint shown beside the option

    friend bool operator==(const ActionOption&, const ActionOption&) = default;
};

// One group of the catalog.
struct AppActions {
    std::string id;
    std::string name;
    std::string symbol;  // the system symbol image shown for the group
    std::vector<ActionOption> options;

    friend bool operator==(const AppActions&, const AppActions&) = default;
};

// The fixed, built-in list of everything a gesture can be bound to, and the texts shown for a
// reference into it. Built once on first use, then shared read-only.
class ActionCatalog {
  public:
    // A resolved reference; both point into the catalog, which lives as long as the process.
    struct Entry {
        const AppActions* app;
        const ActionOption* option;
    };

    static const std::vector<AppActions>& apps();

    // Where the system's grid of applications lives: it was renamed in macOS 26.
    static std::string appGridPathFor(std::optional<int> macOSMajorVersion);

    static std::optional<Entry> lookup(const ActionRef& ref);
    // A reference saved by an earlier version, brought onto the current catalog; nothing when it
    // can't be mapped. A reference that already resolves comes back unchanged.
    static std::optional<ActionRef> migrated(const ActionRef& ref);
    // The sentence shown for a binding's action.
    static std::string summary(const ActionRef& ref, const ActionHost& host);
    // The short label shown in a capsule.
    static std::string pill(const ActionRef& ref, const ActionHost& host);
    // The display name of an application bundle; nothing without files to look in.
    static std::optional<std::string> appName(const URL& url, const AppFiles* files);
    // The catalog narrowed to what a search text finds.
    static std::vector<AppActions> filtered(std::string_view query);
    // The same search in the catalog as a platform shows it (its own labels and keys).
    static std::vector<AppActions> filtered(std::string_view query, const std::vector<AppActions>& shown);
};

}  // namespace ostrelle
