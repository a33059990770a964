#include "platform/linux/portal_hot_key_registrar.h"

#include <systemd/sd-bus.h>

#include "platform/linux/hot_key_modifiers.h"
#include "platform/linux/session_bus_address.h"
#include "platform/linux/xkb_keyboard_layout.h"
#include "support/log.h"

namespace ostrelle {
namespace {

constexpr const char* portalService = "org.freedesktop.portal.Desktop";
constexpr const char* portalPath = "/org/freedesktop/portal/desktop";
constexpr const char* shortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";
constexpr const char* requestInterface = "org.freedesktop.portal.Request";
constexpr const char* sessionInterface = "org.freedesktop.portal.Session";
constexpr const char* requestPathPrefix = "/org/freedesktop/portal/desktop/request/";
constexpr const char* sessionPathPrefix = "/org/freedesktop/portal/desktop/session/";

constexpr const char* shortcutId = "toggle";
constexpr const char* shortcutDescription = "Turn gestures on or off";
constexpr const char* tokenPrefix = "ostrelle";

constexpr std::uint32_t responseSuccess = 0;

sd_bus* openBus(const std::string& address) {
    sd_bus* bus = nullptr;
    if (sd_bus_new(&bus) < 0) return nullptr;
    if (sd_bus_set_address(bus, address.c_str()) < 0 || sd_bus_set_bus_client(bus, 1) < 0 ||
        sd_bus_start(bus) < 0) {
        sd_bus_flush_close_unref(bus);
        return nullptr;
    }
    return bus;
}

// Whether a portal on the bus offers global shortcuts: it answers for the interface's version.
bool offersShortcuts(sd_bus* bus) {
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus, &call, portalService, portalPath,
                                       "org.freedesktop.DBus.Properties", "Get") < 0) {
        return false;
    }
    sd_bus_message* reply = nullptr;
    sd_bus_error error{};  // SD_BUS_ERROR_NULL, without its C compound literal
    const auto limit = static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::microseconds>(PortalHotKeyRegistrar::probeLimit).count());
    const bool answered = sd_bus_message_append(call, "ss", shortcutsInterface, "version") >= 0 &&
                          sd_bus_call(bus, call, limit, &error, &reply) >= 0;
    sd_bus_error_free(&error);
    sd_bus_message_unref(reply);
    sd_bus_message_unref(call);
    return answered;
}

}  // namespace

std::unique_ptr<PortalHotKeyRegistrar> PortalHotKeyRegistrar::open(EpollMainQueue& queue,
                                                                   const EnvironmentLookup& environment) {
    const std::optional<std::string> address = sessionBusAddress(environment);
    if (!address) return nullptr;
    sd_bus* bus = openBus(*address);
    if (bus == nullptr) return nullptr;
    if (!offersShortcuts(bus)) {
        sd_bus_flush_close_unref(bus);
        return nullptr;
    }
    std::unique_ptr<PortalHotKeyRegistrar> registrar(new PortalHotKeyRegistrar(queue, bus));
    if (!registrar->start()) return nullptr;
    return registrar;
}

PortalHotKeyRegistrar::PortalHotKeyRegistrar(EpollMainQueue& queue, sd_bus* bus) : queue_(queue), bus_(bus) {}

PortalHotKeyRegistrar::~PortalHotKeyRegistrar() {
    for (auto& [reference, binding] : bindings_) {
        sd_bus_slot_unref(binding.responseSlot);
        if (binding.sessionMade) closeSession(binding);
    }
    if (fd_ >= 0) queue_.unwatch(fd_);
    sd_bus_slot_unref(activatedSlot_);
    sd_bus_flush_close_unref(bus_);
}

bool PortalHotKeyRegistrar::start() {
    const char* unique = nullptr;
    if (sd_bus_get_unique_name(bus_, &unique) < 0) return false;
    // ":1.42" appears in the portal's object paths as "1_42".
    for (const char* c = unique; *c != '\0'; ++c) {
        if (*c != ':') senderPart_ += *c == '.' ? '_' : *c;
    }
    if (sd_bus_match_signal(bus_, &activatedSlot_, nullptr, portalPath, shortcutsInterface, "Activated",
                            activatedThunk, this) < 0) {
        return false;
    }
    fd_ = sd_bus_get_fd(bus_);
    if (fd_ < 0 || !queue_.watch(fd_, [this] { process(); })) {
        fd_ = -1;
        return false;
    }
    // The probe's reply may have brought other messages into the bus's buffer.
    process();
    return true;
}

void PortalHotKeyRegistrar::process() {
    int result = 0;
    while ((result = sd_bus_process(bus_, nullptr)) > 0) {
    }
    if (result < 0) {
        Log::warning("the desktop portal's bus closed; the toggle shortcut no longer works");
        queue_.unwatch(fd_);
        fd_ = -1;
    }
}

std::optional<std::string> PortalHotKeyRegistrar::trigger(std::uint32_t keyCode, std::uint32_t modifiers) {
    // Wayland keeps the user's keymap with the compositor; xkbcommon's defaults name the keys.
    static const std::unique_ptr<XkbKeyboardLayout> layout = XkbKeyboardLayout::fromDefaults();
    if (layout == nullptr || keyCode > UINT16_MAX) return std::nullopt;
    const std::optional<std::string> key = layout->keySymName(static_cast<std::uint16_t>(keyCode));
    if (!key) return std::nullopt;
    std::string text;
    if (modifiers & hot_key::control) text += "CTRL+";
    if (modifiers & hot_key::option) text += "ALT+";
    if (modifiers & hot_key::shift) text += "SHIFT+";
    if (modifiers & hot_key::command) text += "LOGO+";
    return text + *key;
}

HotKeyRegistrar::Registration PortalHotKeyRegistrar::registerHotKey(std::uint32_t keyCode,
                                                                    std::uint32_t modifiers) {
    std::optional<std::string> preferred = trigger(keyCode, modifiers);
    if (!preferred) return {hot_key::noSuchKey, std::nullopt};
    const Reference reference = nextReference_++;
    Binding& binding = bindings_[reference];
    binding.owner = this;
    binding.reference = reference;
    binding.trigger = std::move(*preferred);
    binding.sessionPath = sessionPathPrefix + senderPart_ + "/" + tokenPrefix + std::to_string(reference);
    createSession(binding);
    return {success, reference};
}

void PortalHotKeyRegistrar::unregisterHotKey(Reference reference) {
    const auto found = bindings_.find(reference);
    if (found == bindings_.end()) return;
    if (!found->second.sessionMade && found->second.responseSlot != nullptr) {
        // The session is still being made; it is closed as soon as it exists.
        found->second.wanted = false;
        return;
    }
    if (found->second.sessionMade) closeSession(found->second);
    erase(reference);
}

void PortalHotKeyRegistrar::erase(Reference reference) {
    const auto found = bindings_.find(reference);
    if (found == bindings_.end()) return;
    sd_bus_slot_unref(found->second.responseSlot);
    bindings_.erase(found);
}

std::string PortalHotKeyRegistrar::requestPath(const std::string& token) const {
    return requestPathPrefix + senderPart_ + "/" + token;
}

bool PortalHotKeyRegistrar::sendRequest(Binding& binding, const std::string& token, sd_bus_message* call) {
    sd_bus_slot_unref(binding.responseSlot);
    binding.responseSlot = nullptr;
    // The match goes out before the call on the same connection, so no Response can slip past it.
    const bool sent =
        sd_bus_match_signal_async(bus_, &binding.responseSlot, nullptr, requestPath(token).c_str(),
                                  requestInterface, "Response", responseThunk, nullptr, &binding) >= 0 &&
        sd_bus_send(bus_, call, nullptr) >= 0 && sd_bus_flush(bus_) >= 0;
    sd_bus_message_unref(call);
    if (!sent) Log::warning("could not ask the desktop portal for the toggle shortcut");
    return sent;
}

void PortalHotKeyRegistrar::createSession(Binding& binding) {
    const std::string number = std::to_string(binding.reference);
    const std::string requestToken = std::string(tokenPrefix) + "_create" + number;
    const std::string sessionToken = tokenPrefix + number;
    sd_bus_message* call = nullptr;
    if (sd_bus_message_new_method_call(bus_, &call, portalService, portalPath, shortcutsInterface,
                                       "CreateSession") < 0 ||
        sd_bus_message_append(call, "a{sv}", 2, "handle_token", "s", requestToken.c_str(),
                              "session_handle_token", "s", sessionToken.c_str()) < 0) {
        sd_bus_message_unref(call);
        Log::warning("could not ask the desktop portal for the toggle shortcut");
        return;
    }
    sendRequest(binding, requestToken, call);
}

void PortalHotKeyRegistrar::bindShortcut(Binding& binding) {
    const std::string requestToken = std::string(tokenPrefix) + "_bind" + std::to_string(binding.reference);
    sd_bus_message* call = nullptr;
    const bool built =
        sd_bus_message_new_method_call(bus_, &call, portalService, portalPath, shortcutsInterface,
                                       "BindShortcuts") >= 0 &&
        sd_bus_message_append(call, "o", binding.sessionPath.c_str()) >= 0 &&
        sd_bus_message_open_container(call, 'a', "(sa{sv})") >= 0 &&
        sd_bus_message_open_container(call, 'r', "sa{sv}") >= 0 &&
        sd_bus_message_append(call, "sa{sv}", shortcutId, 2, "description", "s", shortcutDescription,
                              "preferred_trigger", "s", binding.trigger.c_str()) >= 0 &&
        sd_bus_message_close_container(call) >= 0 && sd_bus_message_close_container(call) >= 0 &&
        // No parent window: the service has none.
        sd_bus_message_append(call, "sa{sv}", "", 1, "handle_token", "s", requestToken.c_str()) >= 0;
    if (!built) {
        sd_bus_message_unref(call);
        Log::warning("could not ask the desktop portal for the toggle shortcut");
        return;
    }
    sendRequest(binding, requestToken, call);
}

void PortalHotKeyRegistrar::closeSession(const Binding& binding) {
    sd_bus_call_method_async(bus_, nullptr, portalService, binding.sessionPath.c_str(), sessionInterface,
                             "Close", nullptr, nullptr, "");
    sd_bus_flush(bus_);
}

void PortalHotKeyRegistrar::onResponse(Binding& binding, std::uint32_t response) {
    sd_bus_slot_unref(binding.responseSlot);
    binding.responseSlot = nullptr;
    if (!binding.sessionMade) {
        if (response != responseSuccess) {
            Log::warning("the desktop portal made no session for the toggle shortcut");
            erase(binding.reference);
            return;
        }
        binding.sessionMade = true;
        if (!binding.wanted) {
            closeSession(binding);
            erase(binding.reference);
            return;
        }
        bindShortcut(binding);
        return;
    }
    // The user may have declined or chosen nothing; the session stays for the desktop's settings.
    if (response != responseSuccess) Log::warning("the desktop did not bind the toggle shortcut");
}

void PortalHotKeyRegistrar::onActivated(const std::string& sessionPath) {
    for (const auto& [reference, binding] : bindings_) {
        if (binding.sessionPath == sessionPath && binding.wanted) {
            if (onPress_) onPress_();
            return;
        }
    }
}

int PortalHotKeyRegistrar::responseThunk(sd_bus_message* message, void* binding, sd_bus_error*) {
    std::uint32_t response = 0;
    if (sd_bus_message_read(message, "u", &response) < 0) return 0;
    auto* target = static_cast<Binding*>(binding);
    target->owner->onResponse(*target, response);
    return 0;
}

int PortalHotKeyRegistrar::activatedThunk(sd_bus_message* message, void* self, sd_bus_error*) {
    const char* session = nullptr;
    const char* shortcut = nullptr;
    if (sd_bus_message_read(message, "os", &session, &shortcut) < 0) return 0;
    if (std::string_view(shortcut) == shortcutId)
        static_cast<PortalHotKeyRegistrar*>(self)->onActivated(session);
    return 0;
}

}  // namespace ostrelle
