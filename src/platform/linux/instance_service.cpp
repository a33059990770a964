#include "platform/linux/instance_service.h"

#include <unistd.h>

#include <algorithm>
#include <nlohmann/json.hpp>

#include "platform/linux/instance_socket.h"

namespace ostrelle {
namespace {

using Json = nlohmann::ordered_json;

}  // namespace

InstanceService::InstanceService(Parts parts)
    : parts_(parts),
      engine_({.store = parts.store,
               .source = parts.source,
               .system = parts.system,
               .queue = parts.queue,
               .settings = parts.settings,
               .hotKeys = parts.hotKeys,
               .host = parts.host}) {}

std::string InstanceService::answer(const std::string& request) {
    Json reply = Json::object();
    if (request == instance_requests::quit) {
        if (parts_.quit) parts_.quit();
        reply["quitting"] = true;
    } else if (request == instance_requests::open) {
        if (parts_.open) parts_.open();
        reply["opened"] = parts_.open != nullptr;
    } else if (request == instance_requests::toggle) {
        engine_.setEnabled(!engine_.isEnabled());
        reply["listening"] = engine_.isEnabled();
    } else if (request == instance_requests::status) {
        const auto counts = parts_.source.eventCounts();
        reply["listening"] = engine_.isEnabled();
        reply["sourceError"] = engine_.sourceError() ? Json(*engine_.sourceError()) : Json(nullptr);
        reply["events"] = {{"all", counts.all}, {"touched", counts.touched}};
        if (parts_.touchpadsOpen) reply["touchpads"] = parts_.touchpadsOpen();
        reply["bindings"] = parts_.store.bindings().size();
        // Why actions can't send keys, and why the toggle shortcut isn't held; null when they work.
        KeyCodeOutput* keys = parts_.system.keyCodes();
        const auto keysError = keys ? keys->unavailableReason() : std::nullopt;
        reply["keysError"] = keysError ? Json(*keysError) : Json(nullptr);
        const auto& toggleError = engine_.toggleShortcutError();
        reply["toggleShortcutError"] = toggleError ? Json(*toggleError) : Json(nullptr);
        reply["haptics"] = parts_.system.feedback().hasHaptics();
        reply["pid"] = ::getpid();
    } else {
        reply["error"] = "unknown request";
    }
    return reply.dump();
}

void InstanceService::fileChanged(const std::string& name) {
    if (name == parts_.settings.path().filename()) settingsChanged();
    if (name == parts_.store.fileURL().filename()) parts_.store.refresh();
}

void InstanceService::settingsChanged() {
    const auto changed = parts_.settings.reload();
    const auto has = [&changed](std::string_view key) {
        return std::find(changed.begin(), changed.end(), key) != changed.end();
    };
    if (has(settings_keys::listening)) {
        // A removed key means the default, as at start-up.
        const bool listening = parts_.settings.boolValue(settings_keys::listening).value_or(true);
        if (listening != engine_.isEnabled()) engine_.setEnabled(listening);
    }
    if (has(settings_keys::toggleShortcut)) {
        const auto shortcut = GestureEngine::storedToggleShortcut(parts_.settings);
        if (shortcut != engine_.toggleShortcut() && (!shortcut || shortcut->isGlobal()))
            engine_.setToggleShortcut(shortcut);
    }
    // "hapticFeedback" is read at every run, so nothing is needed for it.
}

}  // namespace ostrelle
