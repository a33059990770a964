#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "actions/action_catalog.h"
#include "actions/linux_chord.h"
#include "support/linux_desktop.h"

namespace ostrelle {

// What one catalog option does on a Linux desktop.
struct LinuxRendition {
    std::vector<LinuxChord> chords;          // pressed one after another
    std::optional<std::string> unsupported;  // why the option means nothing here, as the log says it

    friend bool operator==(const LinuxRendition&, const LinuxRendition&) = default;
};

// The catalog's actions translated for one Linux desktop: Linux users expect Linux chords (Ctrl+T,
// not Super+T) and the desktop's own shortcuts for overview, workspaces and the like. Read once
// from the table built into the program; ids and the bindings file stay those of the catalog.
class LinuxActions {
  public:
    // The built-in table; a broken one is a programming error.
    explicit LinuxActions(LinuxDesktop desktop);
    // Another table, for tests of the reader; throws std::invalid_argument saying what is wrong.
    static LinuxActions fromJSON(std::string_view json, LinuxDesktop desktop);

    LinuxDesktop desktop() const { return desktop_; }

    // The catalog as this desktop shows it: the same groups, ids and kinds, with Linux labels,
    // keys written as Linux writes them, and notes that point to the desktop's own settings.
    const std::vector<AppActions>& catalog() const { return catalog_; }
    // The option as shown here; nothing for a reference the catalog doesn't hold.
    const ActionOption* shownOption(const ActionRef& ref) const;

    // What the option does while the app with this id is in front; nothing for the options whose
    // effect the reference itself holds (a custom shortcut, an app to open).
    const LinuxRendition* rendition(const ActionRef& ref,
                                    const std::optional<std::string>& frontmostID) const;

    // The application id that the runner's per-application rules use, for an X11 window class.
    std::optional<std::string> applicationID(std::string_view windowClass) const;

  private:
    struct AppRendition {
        const std::set<std::string, std::less<>>* appIDs;
        LinuxRendition rendition;
    };
    struct Entry {
        LinuxRendition rendition;
        std::vector<AppRendition> perApp;
    };

    LinuxActions() = default;
    void read(std::string_view json);

    LinuxDesktop desktop_ = LinuxDesktop::other;
    std::map<std::string, Entry, std::less<>> entries_;  // by "group/option"
    std::map<std::string, std::string, std::less<>> windowClasses_;
    std::vector<AppActions> catalog_;
};

}  // namespace ostrelle
