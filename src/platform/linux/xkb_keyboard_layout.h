#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "actions/keyboard_layout.h"
#include "platform/linux/x11_connection.h"

struct xkb_context;
struct xkb_keymap;
struct xkb_state;

namespace ostrelle {

// Key names by the user's keyboard layout, through xkbcommon: what each key types with no
// modifier held, in the layout group now chosen.
class XkbKeyboardLayout final : public KeyboardLayout {
  public:
    // The X server's keymap, read again whenever the user changes layout or keymap; nothing when
    // the server has no XKB. The connection must outlive this and be watched for changes to arrive.
    static std::unique_ptr<XkbKeyboardLayout> fromServer(X11Connection& connection);
    // The keymap xkbcommon builds from its defaults and the XKB_DEFAULT_* variables (Wayland, the
    // console); nothing when the keymap data isn't installed.
    static std::unique_ptr<XkbKeyboardLayout> fromDefaults();
    // The server's keymap when there is an X connection that has one, else the defaults.
    static std::unique_ptr<XkbKeyboardLayout> forSession(X11Connection* x11);
    ~XkbKeyboardLayout() override;
    XkbKeyboardLayout(const XkbKeyboardLayout&) = delete;
    XkbKeyboardLayout& operator=(const XkbKeyboardLayout&) = delete;

    std::optional<std::string> characters(std::uint16_t keyCode) const override;
    // The keysym name of the key with no modifier held ("t", "F1", "space"); nothing when unmapped.
    std::optional<std::string> keySymName(std::uint16_t keyCode) const;

  private:
    XkbKeyboardLayout(xkb_context* context, X11Connection* connection);
    bool loadFromServer();
    void onEvent(const XEvent& event);
    void selectGroup(std::uint32_t group);
    // The X key code of a macOS key code; nothing for keys a PC keyboard lacks.
    static std::optional<std::uint32_t> xKeyCode(std::uint16_t keyCode);

    xkb_context* context_;
    xkb_keymap* keymap_ = nullptr;
    xkb_state* state_ = nullptr;
    X11Connection* connection_;
    X11Connection::ListenerId listener_ = 0;
    std::int32_t device_ = -1;
    int xkbEventType_ = -1;
};

}  // namespace ostrelle
