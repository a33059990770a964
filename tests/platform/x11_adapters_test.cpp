#include <gtest/gtest.h>

#include <cstdlib>
#include <map>
#include <string>
#include <vector>

#include "platform/bounded_run.h"
#include "platform/linux/hot_key_choice.h"
#include "platform/linux/x11_active_window.h"
#include "platform/linux/x11_connection.h"
#include "platform/linux/x11_hot_key_registrar.h"
#include "platform/linux/xkb_keyboard_layout.h"
#include "platform/xvfb_server.h"
// Xlib defines Status, Bool and None as macros: it comes after every header that uses those names.
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace ostrelle {
namespace {

constexpr std::uint32_t commandBit = 0x100;
constexpr std::uint32_t shiftBit = 0x200;
constexpr std::uint32_t optionBit = 0x800;
constexpr std::uint32_t controlBit = 0x1000;
constexpr std::uint32_t ctrlAlt = controlBit | optionBit;
constexpr std::uint32_t keyT = 0x11;
constexpr std::uint32_t keyF1 = 0x7A;
constexpr std::uint32_t keyF5 = 0x60;
constexpr std::uint32_t keySpace = 0x31;
constexpr std::uint32_t keyFn = 0x3F;  // no PC keyboard has it
const std::vector<KeySym> ctrlAltT{XK_Control_L, XK_Alt_L, XK_t};

// A service-side connection to a private X server, and a second client that plays the user,
// the window manager and other programs.
class X11Session : public ::testing::Test {
  protected:
    void SetUp() override {
        connection = X11Connection::open(server.display());
        ASSERT_NE(connection, nullptr);
        ASSERT_TRUE(connection->watch(queue));
        otherConnection = X11Connection::open(server.display());
        ASSERT_NE(otherConnection, nullptr);
        other = otherConnection->display();
        fence = XInternAtom(other, "OSTRELLE_TEST_FENCE", False);
        XSelectInput(connection->display(), connection->root(), PropertyChangeMask);
        connection->addListener([this](const XEvent& event) {
            if (event.type == PropertyNotify && event.xproperty.atom == fence) queue.quit();
        });
    }
    void key(KeySym symbol, bool down) {
        XTestFakeKeyEvent(other, XKeysymToKeycode(other, symbol), down ? True : False, CurrentTime);
    }
    void tap(KeySym symbol) {
        key(symbol, true);
        key(symbol, false);
    }
    // Holds the modifiers, presses the last key `presses` times (a held key repeating), lets go of
    // everything, and waits until the service has seen every event that caused: the server sends
    // it the fence's property change only after them.
    void type(const std::vector<KeySym>& chord, int presses = 1) {
        for (std::size_t i = 0; i + 1 < chord.size(); ++i) key(chord[i], true);
        for (int i = 0; i < presses; ++i) key(chord.back(), true);
        for (auto symbol = chord.rbegin(); symbol != chord.rend(); ++symbol) key(*symbol, false);
        settle();
    }
    void settle() {
        XSync(other, False);
        const long value = 0;
        XChangeProperty(other, XDefaultRootWindow(other), fence, XA_INTEGER, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(&value), 1);
        XFlush(other);
        testing::runBounded(queue);
    }

    testing::XvfbServer server;
    EpollMainQueue queue;
    std::unique_ptr<X11Connection> connection;
    std::unique_ptr<X11Connection> otherConnection;
    Display* other = nullptr;
    Atom fence = None;
};

struct PressCase {
    std::string name;
    std::uint32_t key;
    std::uint32_t modifiers;
    std::vector<KeySym> locks;  // tapped before, to turn them on
    std::vector<KeySym> chord;
    int presses;
    int expectedCalls;
};

class HotKeyPress : public X11Session, public ::testing::WithParamInterface<PressCase> {};

TEST_P(HotKeyPress, CallsTheHandlerForTheGrabbedCombinationWhateverTheLocks) {
    const PressCase& row = GetParam();
    X11HotKeyRegistrar registrar(*connection);
    int calls = 0;
    registrar.setPressHandler([&] { ++calls; });
    const auto registration = registrar.registerHotKey(row.key, row.modifiers);
    ASSERT_EQ(registration.status, HotKeyRegistrar::success);
    for (const KeySym lock : row.locks) tap(lock);
    type(row.chord, row.presses);
    EXPECT_EQ(calls, row.expectedCalls);
}

INSTANTIATE_TEST_SUITE_P(
    X11, HotKeyPress,
    ::testing::Values(
        PressCase{"ControlOptionT", keyT, ctrlAlt, {}, ctrlAltT, 1, 1},
        PressCase{"CapsLockOn", keyT, ctrlAlt, {XK_Caps_Lock}, ctrlAltT, 1, 1},
        PressCase{"NumLockOn", keyT, ctrlAlt, {XK_Num_Lock}, ctrlAltT, 1, 1},
        PressCase{"BothLocksOn", keyT, ctrlAlt, {XK_Caps_Lock, XK_Num_Lock}, ctrlAltT, 1, 1},
        PressCase{
            "CommandIsSuper", keySpace, commandBit | shiftBit, {}, {XK_Super_L, XK_Shift_L, XK_space}, 1, 1},
        PressCase{"FunctionKeyAlone", keyF1, 0, {XK_Num_Lock}, {XK_F1}, 1, 1},
        PressCase{"HeldKeyCountsOnce", keyT, ctrlAlt, {}, ctrlAltT, 3, 1},
        PressCase{"MissingModifier", keyT, ctrlAlt, {}, {XK_Control_L, XK_t}, 1, 0},
        PressCase{"ExtraModifier", keyT, ctrlAlt, {}, {XK_Control_L, XK_Alt_L, XK_Shift_L, XK_t}, 1, 0}),
    [](const auto& row) { return row.param.name; });

TEST_F(X11Session, AnotherClientsGrabIsTakenAndRegistrationsComeAndGoByReference) {
    X11HotKeyRegistrar registrar(*connection);
    int calls = 0;
    registrar.setPressHandler([&] { ++calls; });
    const auto first = registrar.registerHotKey(keyT, ctrlAlt);
    ASSERT_EQ(first.status, HotKeyRegistrar::success);

    // The other program holds Ctrl+Alt+F5 only with CapsLock on: the rest of our grabs succeed
    // and must be released again.
    const KeyCode f5 = XKeysymToKeycode(other, XK_F5);
    XGrabKey(other, f5, ControlMask | Mod1Mask | LockMask, XDefaultRootWindow(other), False, GrabModeAsync,
             GrabModeAsync);
    XSync(other, False);
    const auto taken = registrar.registerHotKey(keyF5, ctrlAlt);
    EXPECT_EQ(taken.status, HotKeyRegistrar::alreadyTaken);
    EXPECT_FALSE(taken.reference.has_value());
    EXPECT_EQ(registrar.registerHotKey(keyFn, controlBit).status, hot_key::noSuchKey);
    XUngrabKey(other, f5, ControlMask | Mod1Mask | LockMask, XDefaultRootWindow(other));
    {
        X11ErrorTrap trap(*otherConnection);
        XGrabKey(other, f5, ControlMask | Mod1Mask, XDefaultRootWindow(other), False, GrabModeAsync,
                 GrabModeAsync);
        EXPECT_EQ(trap.sync(), Success) << "a failed registration left a grab behind";
    }
    type(ctrlAltT);
    EXPECT_EQ(calls, 1) << "a failed registration disturbed an earlier one";

    // Two references to one combination: it stays grabbed until both are gone.
    const auto second = registrar.registerHotKey(keyT, ctrlAlt);
    ASSERT_EQ(second.status, HotKeyRegistrar::success);
    registrar.unregisterHotKey(*first.reference);
    type(ctrlAltT);
    EXPECT_EQ(calls, 2);
    registrar.unregisterHotKey(*second.reference);
    type(ctrlAltT);
    EXPECT_EQ(calls, 2);
}

TEST_F(X11Session, ActiveWindowIsTheClassOfTheWindowTheWindowManagerNames) {
    struct Row {
        std::string name;
        std::function<void()> windowManager;
        std::optional<WindowClass> expected;
    };
    const Window root = XDefaultRootWindow(other);
    const Atom active = XInternAtom(other, "_NET_ACTIVE_WINDOW", False);
    const auto announce = [&](Window window) {
        XChangeProperty(other, root, active, XA_WINDOW, 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(&window), 1);
    };
    const auto makeWindow = [&](const char* instance, const char* className) {
        const Window window = XCreateSimpleWindow(other, root, 0, 0, 10, 10, 0, 0, 0);
        if (instance != nullptr) {
            XClassHint hint{const_cast<char*>(instance), const_cast<char*>(className)};
            XSetClassHint(other, window, &hint);
        }
        return window;
    };
    const std::vector<Row> rows{
        {"NoWindowManager", [&] { XDeleteProperty(other, root, active); }, std::nullopt},
        {"WindowWithClass", [&] { announce(makeWindow("navigator", "Firefox")); },
         WindowClass{"navigator", "Firefox"}},
        {"WindowWithoutClass", [&] { announce(makeWindow(nullptr, nullptr)); }, std::nullopt},
        {"ClosedWindow",
         [&] {
             const Window window = makeWindow("code", "Code");
             announce(window);
             XDestroyWindow(other, window);
         },
         std::nullopt},
        {"NothingActive", [&] { announce(None); }, std::nullopt},
    };
    X11ActiveWindow activeWindow(*connection);
    for (const Row& row : rows) {
        row.windowManager();
        XSync(other, False);
        EXPECT_EQ(activeWindow.active(), row.expected) << row.name;
    }
}

TEST_F(X11Session, KeyboardLayoutFollowsTheServersKeymap) {
    struct Row {
        std::string layout;
        std::vector<std::pair<std::uint16_t, std::optional<std::string>>> keys;
    };
    const std::vector<Row> rows{
        {"de", {{0x10, "z"}, {0x06, "y"}, {0x29, "\u00F6"}, {0x32, "^"}, {0x3F, std::nullopt}}},
        {"us", {{0x10, "y"}, {0x29, ";"}, {0x32, "`"}, {0x24, "\r"}}},
        {"fr", {{0x00, "q"}, {0x12, "&"}}},
    };
    const auto layout = XkbKeyboardLayout::forSession(connection.get());
    ASSERT_NE(layout, nullptr);
    for (const Row& row : rows) {
        // Waits until the first key reads as the new layout has it, then checks the rest.
        const auto& [probe, expected] = row.keys.front();
        const auto id = connection->addListener([&, probe = probe, expected = expected](const XEvent&) {
            if (layout->characters(probe) == expected) queue.quit();
        });
        const std::string command = "setxkbmap -display " + server.display() + " " + row.layout;
        ASSERT_EQ(std::system(command.c_str()), 0) << command;
        if (layout->characters(probe) != expected) testing::runBounded(queue);
        connection->removeListener(id);
        for (const auto& [key, characters] : row.keys) {
            EXPECT_EQ(layout->characters(key), characters) << row.layout << " key " << key;
        }
    }
}

TEST(HotKeyChoice, FollowsTheSessionType) {
    testing::XvfbServer server;
    EpollMainQueue queue;
    const auto connection = X11Connection::open(server.display());
    ASSERT_NE(connection, nullptr);
    EXPECT_EQ(X11Connection::open(""), nullptr);
    struct Row {
        std::string name;
        std::map<std::string, std::string> environment;
        bool x11;
        std::int32_t expected;  // the registration's status
    };
    const std::string display = server.display();
    constexpr std::int32_t ok = HotKeyRegistrar::success, none = HotKeyRegistrar::unavailable;
    // The lookup reads these alone: no session bus is named, so no portal is reached.
    const std::vector<Row> rows{
        {"X11Session", {{"DISPLAY", display}, {"XDG_SESSION_TYPE", "x11"}}, true, ok},
        {"DisplayWithoutSessionType", {{"DISPLAY", display}}, true, ok},
        {"UnreachableServer", {{"DISPLAY", ":99"}}, false, none},
        {"Console", {}, true, none},
        {"WaylandWithoutBus", {{"DISPLAY", display}, {"XDG_SESSION_TYPE", "wayland"}}, true, none},
        {"WaylandDisplayOnly", {{"WAYLAND_DISPLAY", "wayland-0"}}, true, none},
    };
    for (const Row& row : rows) {
        const EnvironmentLookup environment = [&](std::string_view name) -> std::optional<std::string> {
            const auto found = row.environment.find(std::string(name));
            return found == row.environment.end() ? std::nullopt : std::optional(found->second);
        };
        auto registrar = chooseHotKeyRegistrar(environment, row.x11 ? connection.get() : nullptr, queue);
        ASSERT_NE(registrar, nullptr) << row.name;
        const auto registration = registrar->registerHotKey(keyT, ctrlAlt);
        EXPECT_EQ(registration.status, row.expected) << row.name;
        if (registration.reference) registrar->unregisterHotKey(*registration.reference);
    }
}

}  // namespace
}  // namespace ostrelle
