#include "cli/catalog_ids.h"

#include "actions/action_catalog.h"
#include "cli/binding_line.h"
#include "gestures/gesture_catalog.h"

namespace ostrelle::cli {

std::vector<std::string> catalogGestureIDs() {
    std::vector<std::string> ids;
    for (const GestureGroup& group : GestureCatalog::allGroups()) {
        for (const GestureDef& def : group.gestures) ids.push_back(def.id);
    }
    return ids;
}

std::vector<std::string> enabledGestureIDs() {
    std::vector<std::string> ids;
    for (const Gesture& gesture : GestureCatalog::all()) ids.push_back(gesture.id);
    return ids;
}

std::vector<std::string> actionPaths() {
    std::vector<std::string> paths;
    for (const AppActions& app : ActionCatalog::apps()) {
        for (const ActionOption& option : app.options)
            paths.push_back(actionPath({app.id, option.id, {}, {}}));
    }
    return paths;
}

}  // namespace ostrelle::cli
