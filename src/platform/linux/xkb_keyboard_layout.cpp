#include "platform/linux/xkb_keyboard_layout.h"

#include <X11/XKBlib.h>
#include <X11/Xlib-xcb.h>
#include <xkbcommon/xkbcommon-x11.h>
#include <xkbcommon/xkbcommon.h>

#include <array>

#include "actions/linux_key_codes.h"

namespace ostrelle {
namespace {

constexpr std::uint32_t xKeyCodeOffset = 8;  // X and xkbcommon key codes are evdev codes + 8
// Room for what one key types: a few characters at most, four UTF-8 bytes each.
constexpr std::size_t characterBufferSize = 64;
constexpr std::size_t keySymNameBufferSize = 64;  // the longest keysym names are about 30 bytes

// Dead keys type nothing on their own in xkbcommon; named, they show the accent they put on the
// next letter, as the key's cap does.
struct DeadKey {
    xkb_keysym_t symbol;
    const char* accent;
};
constexpr std::array<DeadKey, 8> deadKeys{{
    {XKB_KEY_dead_grave, "`"},
    {XKB_KEY_dead_acute, "\u00B4"},
    {XKB_KEY_dead_circumflex, "^"},
    {XKB_KEY_dead_tilde, "~"},
    {XKB_KEY_dead_diaeresis, "\u00A8"},
    {XKB_KEY_dead_abovering, "\u02DA"},
    {XKB_KEY_dead_cedilla, "\u00B8"},
    {XKB_KEY_dead_caron, "\u02C7"},
}};

}  // namespace

XkbKeyboardLayout::XkbKeyboardLayout(xkb_context* context, X11Connection* connection)
    : context_(context), connection_(connection) {}

XkbKeyboardLayout::~XkbKeyboardLayout() {
    if (connection_ != nullptr && listener_ != 0) connection_->removeListener(listener_);
    xkb_state_unref(state_);
    xkb_keymap_unref(keymap_);
    xkb_context_unref(context_);
}

std::unique_ptr<XkbKeyboardLayout> XkbKeyboardLayout::fromServer(X11Connection& connection) {
    Display* display = connection.display();
    int opcode = 0;
    int eventBase = 0;
    int errorBase = 0;
    int major = XkbMajorVersion;
    int minor = XkbMinorVersion;
    // Also makes Xlib turn the extension's events into XkbEvent.
    if (!XkbQueryExtension(display, &opcode, &eventBase, &errorBase, &major, &minor)) return nullptr;
    xcb_connection_t* xcb = XGetXCBConnection(display);
    if (!xkb_x11_setup_xkb_extension(xcb, XKB_X11_MIN_MAJOR_XKB_VERSION, XKB_X11_MIN_MINOR_XKB_VERSION,
                                     XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr,
                                     nullptr)) {
        return nullptr;
    }
    xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (context == nullptr) return nullptr;
    std::unique_ptr<XkbKeyboardLayout> layout(new XkbKeyboardLayout(context, &connection));
    layout->device_ = xkb_x11_get_core_keyboard_device_id(xcb);
    if (layout->device_ < 0 || !layout->loadFromServer()) return nullptr;
    layout->xkbEventType_ = eventBase;
    // A new keymap (setxkbmap, a keyboard plugged in) and a switch of layout group.
    XkbSelectEvents(display, XkbUseCoreKbd, XkbNewKeyboardNotifyMask | XkbMapNotifyMask,
                    XkbNewKeyboardNotifyMask | XkbMapNotifyMask);
    XkbSelectEventDetails(display, XkbUseCoreKbd, XkbStateNotify, XkbGroupStateMask, XkbGroupStateMask);
    XFlush(display);
    layout->listener_ =
        connection.addListener([raw = layout.get()](const XEvent& event) { raw->onEvent(event); });
    return layout;
}

std::unique_ptr<XkbKeyboardLayout> XkbKeyboardLayout::fromDefaults() {
    xkb_context* context = xkb_context_new(XKB_CONTEXT_NO_FLAGS);
    if (context == nullptr) return nullptr;
    std::unique_ptr<XkbKeyboardLayout> layout(new XkbKeyboardLayout(context, nullptr));
    layout->keymap_ = xkb_keymap_new_from_names(context, nullptr, XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (layout->keymap_ == nullptr) return nullptr;
    layout->state_ = xkb_state_new(layout->keymap_);
    if (layout->state_ == nullptr) return nullptr;
    return layout;
}

std::unique_ptr<XkbKeyboardLayout> XkbKeyboardLayout::forSession(X11Connection* x11) {
    if (x11 != nullptr) {
        if (auto layout = fromServer(*x11)) return layout;
    }
    return fromDefaults();
}

bool XkbKeyboardLayout::loadFromServer() {
    xcb_connection_t* xcb = XGetXCBConnection(connection_->display());
    xkb_keymap* keymap = xkb_x11_keymap_new_from_device(context_, xcb, device_, XKB_KEYMAP_COMPILE_NO_FLAGS);
    if (keymap == nullptr) return false;
    xkb_state* state = xkb_x11_state_new_from_device(keymap, xcb, device_);
    if (state == nullptr) {
        xkb_keymap_unref(keymap);
        return false;
    }
    xkb_state_unref(state_);
    xkb_keymap_unref(keymap_);
    keymap_ = keymap;
    state_ = state;
    // The server's state also holds the modifiers and locks held now; keep only the layout group.
    selectGroup(xkb_state_serialize_layout(state_, XKB_STATE_LAYOUT_EFFECTIVE));
    return true;
}

void XkbKeyboardLayout::selectGroup(std::uint32_t group) {
    xkb_state_update_mask(state_, 0, 0, 0, 0, 0, group);
}

void XkbKeyboardLayout::onEvent(const XEvent& event) {
    if (event.type != xkbEventType_) return;
    const auto& xkb = reinterpret_cast<const XkbEvent&>(event);
    switch (xkb.any.xkb_type) {
        case XkbNewKeyboardNotify:
        case XkbMapNotify:
            // A failed read keeps the keymap there was.
            loadFromServer();
            break;
        case XkbStateNotify:
            selectGroup(static_cast<std::uint32_t>(xkb.state.group));
            break;
        default:
            break;
    }
}

std::optional<std::uint32_t> XkbKeyboardLayout::xKeyCode(std::uint16_t keyCode) {
    const std::optional<std::uint16_t> linuxKey = linuxKeyCode(keyCode);
    if (!linuxKey) return std::nullopt;
    return *linuxKey + xKeyCodeOffset;
}

std::optional<std::string> XkbKeyboardLayout::characters(std::uint16_t keyCode) const {
    const std::optional<std::uint32_t> key = xKeyCode(keyCode);
    if (!key) return std::nullopt;
    std::array<char, characterBufferSize> text{};
    const int length = xkb_state_key_get_utf8(state_, *key, text.data(), text.size());
    if (length == 0) {
        const xkb_keysym_t symbol = xkb_state_key_get_one_sym(state_, *key);
        for (const DeadKey& dead : deadKeys) {
            if (dead.symbol == symbol) return std::string(dead.accent);
        }
        return std::nullopt;
    }
    if (length < 0 || static_cast<std::size_t>(length) >= text.size()) return std::nullopt;
    return std::string(text.data(), static_cast<std::size_t>(length));
}

std::optional<std::string> XkbKeyboardLayout::keySymName(std::uint16_t keyCode) const {
    const std::optional<std::uint32_t> key = xKeyCode(keyCode);
    if (!key) return std::nullopt;
    const xkb_keysym_t symbol = xkb_state_key_get_one_sym(state_, *key);
    if (symbol == XKB_KEY_NoSymbol) return std::nullopt;
    std::array<char, keySymNameBufferSize> name{};
    const int length = xkb_keysym_get_name(symbol, name.data(), name.size());
    if (length <= 0 || static_cast<std::size_t>(length) >= name.size()) return std::nullopt;
    return std::string(name.data(), static_cast<std::size_t>(length));
}

}  // namespace ostrelle
