#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "engine/hot_key_registrar.h"
#include "platform/linux/epoll_main_queue.h"
#include "support/default_paths.h"

namespace ostrelle {

// Global shortcuts on Wayland, where no client may grab keys: the desktop portal's GlobalShortcuts
// interface on the session bus. Each registration is one portal session binding one shortcut,
// with our combination as its preferred trigger; the desktop may ask the user to confirm or
// choose another key, so binding finishes later, and a refusal is only logged. Closing the
// session releases the shortcut. The bus is read on the queue's thread as it turns readable.
class PortalHotKeyRegistrar final : public HotKeyRegistrar {
  public:
    // How long opening waits for the portal to say whether it offers global shortcuts.
    static constexpr std::chrono::milliseconds probeLimit{3000};

    // Nothing when the session bus (DBUS_SESSION_BUS_ADDRESS, else $XDG_RUNTIME_DIR/bus) can't
    // be reached or no portal there offers global shortcuts.
    static std::unique_ptr<PortalHotKeyRegistrar> open(EpollMainQueue& queue,
                                                       const EnvironmentLookup& environment);
    ~PortalHotKeyRegistrar() override;
    PortalHotKeyRegistrar(const PortalHotKeyRegistrar&) = delete;
    PortalHotKeyRegistrar& operator=(const PortalHotKeyRegistrar&) = delete;

    // A key a PC keyboard lacks gives hot_key::noSuchKey; anything else is success at once.
    Registration registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers) override;
    void unregisterHotKey(Reference reference) override;
    void setPressHandler(std::function<void()> onPress) override { onPress_ = std::move(onPress); }

    // The combination as the portal takes a preferred trigger: "CTRL+ALT+t".
    static std::optional<std::string> trigger(std::uint32_t keyCode, std::uint32_t modifiers);

  private:
    struct Binding {
        PortalHotKeyRegistrar* owner = nullptr;
        Reference reference = 0;
        std::string trigger;
        std::string sessionPath;   // where the portal puts the session once it is made
        bool sessionMade = false;  // CreateSession answered
        bool wanted = true;        // false once unregistered before the session was made
        sd_bus_slot* responseSlot = nullptr;
    };

    PortalHotKeyRegistrar(EpollMainQueue& queue, sd_bus* bus);
    bool start();
    void process();
    void createSession(Binding& binding);
    void bindShortcut(Binding& binding);
    void closeSession(const Binding& binding);
    // Listens for the Response of the request the next call makes under `token`, then sends it.
    bool sendRequest(Binding& binding, const std::string& token, sd_bus_message* call);
    std::string requestPath(const std::string& token) const;
    void onResponse(Binding& binding, std::uint32_t response);
    void onActivated(const std::string& sessionPath);
    void erase(Reference reference);

    static int responseThunk(sd_bus_message* message, void* binding, sd_bus_error*);
    static int activatedThunk(sd_bus_message* message, void* self, sd_bus_error*);

    EpollMainQueue& queue_;
    sd_bus* bus_;
    sd_bus_slot* activatedSlot_ = nullptr;
    int fd_ = -1;
    std::string senderPart_;  // our unique name as request and session paths spell it
    std::map<Reference, Binding> bindings_;
    Reference nextReference_ = 1;
    std::function<void()> onPress_;
};

}  // namespace ostrelle
