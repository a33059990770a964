#include "cli/binding_line.h"

#include "actions/action_catalog.h"
#include "cli/command_line_host.h"

namespace ostrelle::cli {

std::string actionPath(const ActionRef& action) {
    return action.appID + "/" + action.optionID;
}

nlohmann::ordered_json bindingLine(const GestureBinding& binding) {
    nlohmann::ordered_json line = nlohmann::ordered_json::object();
    line["fingers"] = binding.gesture.fingers();
    line["gesture"] = binding.gesture.id;
    line["name"] = binding.gesture.displayName();
    line["action"] = actionPath(binding.action);
    line["summary"] = ActionCatalog::summary(binding.action, commandLineHost());
    line["id"] = binding.id;
    return line;
}

}  // namespace ostrelle::cli
