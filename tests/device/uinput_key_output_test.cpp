// The virtual keyboard-and-pointer on a real kernel: what readers of its event node see.
#include "platform/linux/uinput_key_output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <libevdev/libevdev.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>

#include "node_reader.h"
#include "platform/linux/key_code_output.h"
#include "support/log.h"

namespace ostrelle {
namespace {

using testing::KeyEvent;
using testing::NodeReader;

TEST(UinputKeyOutput, ReadersSeeAKeyboardAndPointerThatSendsTheChordAndTheClickInOrder) {
    std::vector<std::string> logged;
    Log::setListener([&](Log::Level, std::string_view line) { logged.emplace_back(line); });
    // The service's way to it: uinput comes first, even with no X display at all.
    const auto output = openKeyCodeOutput([](std::string_view) { return std::nullopt; });
    Log::setListener(nullptr);
    ASSERT_EQ(output->unavailableReason(), std::nullopt);
    EXPECT_TRUE(logged.empty());
    const auto* device = dynamic_cast<UinputKeyOutput*>(output.get());
    ASSERT_NE(device, nullptr);

    NodeReader reader(device->devnode());
    ASSERT_NE(reader.device(), nullptr) << "cannot read " << device->devnode();
    libevdev* seen = reader.device();
    EXPECT_EQ(libevdev_get_name(seen), UinputKeyOutput::deviceName);
    // What udev's input_id looks for to call it a keyboard and a mouse.
    for (unsigned key = KEY_ESC; key <= KEY_D; ++key)
        EXPECT_TRUE(libevdev_has_event_code(seen, EV_KEY, key)) << key;
    for (const unsigned code : std::initializer_list<unsigned>{KEY_MUTE, KEY_PLAYPAUSE, KEY_BRIGHTNESSUP,
                                                               KEY_MICMUTE, BTN_LEFT, BTN_RIGHT})
        EXPECT_TRUE(libevdev_has_event_code(seen, EV_KEY, code)) << code;
    EXPECT_TRUE(libevdev_has_event_code(seen, EV_REL, REL_X) && libevdev_has_event_code(seen, EV_REL, REL_Y));
    EXPECT_FALSE(libevdev_has_event_type(seen, EV_REP))
        << "a stalled release would set off the kernel's repeat";

    const std::vector<KeyEvent> sent = {{KEY_LEFTCTRL, 1},  {KEY_LEFTSHIFT, 1}, {KEY_T, 1},    {KEY_T, 0},
                                        {KEY_LEFTSHIFT, 0}, {KEY_LEFTCTRL, 0},  {BTN_LEFT, 1}, {BTN_LEFT, 0},
                                        {KEY_VOLUMEUP, 1},  {KEY_VOLUMEUP, 0}};
    for (const KeyEvent& event : sent)
        output->postKeyCode(static_cast<std::uint16_t>(event.code), event.value != 0);
    EXPECT_EQ(reader.keys(sent.size()), sent);
}

}  // namespace
}  // namespace ostrelle
