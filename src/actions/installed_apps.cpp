#include "actions/installed_apps.h"

#include <algorithm>
#include <optional>
#include <set>

#include "actions/action_catalog.h"
#include "support/natural_order.h"

namespace ostrelle {
namespace {

constexpr auto finderPath = "/System/Library/CoreServices/Finder.app";
constexpr auto userApplicationsFolder = "/Applications";

struct NamedApp {
    URL url;
    std::string name;
};

// Equal names keep their order: that of the folders' precedence.
std::vector<URL> sortedByName(std::vector<NamedApp> apps) {
    std::stable_sort(apps.begin(), apps.end(),
                     [](const NamedApp& a, const NamedApp& b) { return naturalCompare(a.name, b.name) < 0; });
    std::vector<URL> result;
    result.reserve(apps.size());
    for (NamedApp& app : apps) result.push_back(std::move(app.url));
    return result;
}

}  // namespace

std::vector<std::string> InstalledApps::folders(const std::string& homeDirectory) {
    return {
        "/Applications",
        "/Applications/Utilities",
        "/System/Applications",
        "/System/Applications/Utilities",
        homeDirectory + userApplicationsFolder,
    };
}

const URL& InstalledApps::finder() {
    static const URL url = URL::fileURL(finderPath, true);
    return url;
}

std::vector<URL> InstalledApps::scan(const AppFiles& files) {
    std::vector<URL> candidates;
    for (const std::string& folder : folders(files.homeDirectory())) {
        for (const std::string& path : files.contents(folder)) {
            candidates.push_back(URL::fileURL(path, files.isDirectory(path)));
        }
    }
    candidates.push_back(finder());

    // The first copy of a bundle wins; bundles without an identifier are told apart by path.
    std::vector<NamedApp> apps;
    std::set<std::string> seen;
    for (URL& url : candidates) {
        auto name = ActionCatalog::appName(url, &files);
        if (!name) continue;
        const std::string path = url.path();
        const auto identifier = files.bundleIdentifier(path);
        const std::string key = identifier ? "id:" + *identifier : "path:" + path;
        if (!seen.insert(key).second) continue;
        apps.push_back({std::move(url), std::move(*name)});
    }

    return sortedByName(std::move(apps));
}

std::vector<URL> InstalledApps::scanDesktopEntries(const AppFiles& files) {
    std::vector<NamedApp> apps;
    std::set<std::string> seen;
    for (DesktopEntry& entry : files.desktopEntries()) {
        // A hidden entry still takes its id: that is how a user's copy removes a system one.
        if (!seen.insert(entry.id).second || entry.hidden) continue;
        apps.push_back({URL::fileURL(entry.path, false), std::move(entry.name)});
    }
    return sortedByName(std::move(apps));
}

}  // namespace ostrelle
