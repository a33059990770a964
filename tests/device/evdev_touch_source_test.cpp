// The live touch source on a real kernel: frames, clicks, counts and start-up failures.
#include "platform/linux/evdev_touch_source.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "platform/linux/evdev_touchpad.h"
#include "touch_delivery.h"
#include "uinput_device.h"

namespace ostrelle {
namespace {

using testing::Delivered;
using testing::DeviceShape;
using testing::ExpectedContact;
using testing::TestMainQueue;
using testing::UinputDevice;

// Ids of stand-ins lie above every tracking id; the rows mark them with this.
constexpr std::int64_t standIn = -1;

bool matchesWithStandIns(const std::vector<Contact>& contacts, std::vector<ExpectedContact> expected) {
    if (contacts.size() != expected.size()) return false;
    for (std::size_t i = 0; i < contacts.size(); ++i)
        if (expected[i].id == standIn && contacts[i].id > 0xffffffffLL) expected[i].id = contacts[i].id;
    return testing::matches(contacts, expected);
}

// One report a driver sends, and what must come of it.
struct Step {
    const char* name;
    std::function<void(UinputDevice&)> write;
    std::optional<std::vector<ExpectedContact>> frame;
    int clicks = 0;
};

TEST(EvdevTouchSource, DeliversFramesOfNormalizedContactsThenClicksAndCountsReports) {
    UinputDevice pad({.xMaximum = 1000, .yMaximum = 600});
    TestMainQueue queue;
    EvdevTouchSource source(queue);
    source.setOwnWindowCheck([] { return true; });
    Delivered delivered;
    ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt);
    const double started = queue.now();

    const Step steps[] = {
        {"one finger lands",
         [](UinputDevice& d) {
             d.touch(0, 10, 250, 150);
             d.fingers(1);
         },
         {{{10, 0.25, 0.25}}}},
        {"a second finger lands in the far corner",
         [](UinputDevice& d) {
             d.touch(1, 11, 1000, 600);
             d.fingers(2);
         },
         {{{10, 0.25, 0.25}, {11, 1, 1}}}},
        {"a click with nothing moving", [](UinputDevice& d) { d.write(evdev::EV_KEY, evdev::BTN_LEFT, 1); },
         std::nullopt, 1},
        {"the button comes up", [](UinputDevice& d) { d.write(evdev::EV_KEY, evdev::BTN_LEFT, 0); },
         std::nullopt},
        {"a move and a click in one report",
         [](UinputDevice& d) {
             d.move(0, 500, 300);
             d.write(evdev::EV_KEY, evdev::BTN_LEFT, 1);
         },
         {{{10, 0.5, 0.5}, {11, 1, 1}}},
         1},
        {"the second finger turns out a palm",
         [](UinputDevice& d) {
             d.write(evdev::EV_ABS, evdev::ABS_MT_SLOT, 1);
             d.write(evdev::EV_ABS, evdev::ABS_MT_TOOL_TYPE, evdev::MT_TOOL_PALM);
             d.write(evdev::EV_KEY, evdev::BTN_LEFT, 0);
         },
         {{{10, 0.5, 0.5}}}},
        {"a third finger the pad counts but gives no slot",
         [](UinputDevice& d) { d.fingers(3); },
         {{{10, 0.5, 0.5}, {standIn, 0.5, 0.5}}}},
        {"every finger lifts",
         [](UinputDevice& d) {
             d.lift(0);
             d.lift(1);
             d.fingers(0);
         },
         {{}}},
    };
    std::int64_t reports = 0;
    for (const Step& step : steps) {
        const std::size_t before = delivered.items.size();
        step.write(pad);
        pad.report();
        ASSERT_TRUE(waitForReports(queue, source, ++reports)) << step.name;
        std::vector<Delivered::Item> items(delivered.items.begin() + static_cast<std::ptrdiff_t>(before),
                                           delivered.items.end());
        ASSERT_EQ(items.size(), (step.frame ? 1U : 0U) + static_cast<std::size_t>(step.clicks)) << step.name;
        if (step.frame) {
            ASSERT_TRUE(items.front().frame.has_value())
                << step.name << ": the frame comes before its clicks";
            EXPECT_TRUE(matchesWithStandIns(*items.front().frame, *step.frame))
                << step.name << ": " << ::testing::PrintToString(*items.front().frame);
            // The monotonic clock, as the queue's: not the wall clock evdev uses by default.
            EXPECT_GE(items.front().time, started) << step.name;
            EXPECT_LE(items.front().time, queue.now()) << step.name;
        }
        for (std::size_t i = step.frame ? 1 : 0; i < items.size(); ++i) {
            EXPECT_FALSE(items[i].frame.has_value()) << step.name;
            EXPECT_TRUE(items[i].onOwnUI) << step.name;
        }
    }
    // Every report but the last left a finger down.
    EXPECT_EQ(source.eventCounts(), (TouchSource::EventCounts{reports, reports - 1}));

    // A second start replaces the first: one reader, so a report arrives once, counted afresh,
    // and a click is never over our window without a check.
    const std::size_t deliveredBefore = delivered.items.size();
    source.setOwnWindowCheck({});
    Delivered again;
    ASSERT_EQ(source.start(again.onFrame(), again.onClick()), std::nullopt);
    pad.write(evdev::EV_KEY, evdev::BTN_LEFT, 1);
    pad.report();
    ASSERT_TRUE(waitForReports(queue, source, 1));
    ASSERT_EQ(again.items.size(), 1U);
    EXPECT_FALSE(again.items.front().onOwnUI);
    EXPECT_EQ(source.eventCounts(), (TouchSource::EventCounts{1, 0}));
    source.stop();
    EXPECT_EQ(delivered.items.size(), deliveredBefore) << "nothing reaches the handlers of a stopped start";
}

TEST(EvdevTouchSource, StartFailsWithTheStepThatFixesIt) {
    struct Row {
        const char* name;
        std::optional<DeviceShape> device;
        bool unprivileged;
        std::string_view error;
    };
    const Row rows[] = {
        {"no input device", std::nullopt, false, EvdevTouchSource::noTouchpadText},
        {"only a keyboard", DeviceShape{.name = "keyboard", .keyboard = true}, false,
         EvdevTouchSource::noTouchpadText},
        {"a touchpad the user may not read", DeviceShape{}, true, EvdevTouchSource::noPermissionText},
    };
    for (const Row& row : rows) {
        std::unique_ptr<UinputDevice> device;
        if (row.device) device = std::make_unique<UinputDevice>(*row.device);
        const auto startError = [] {
            TestMainQueue queue;
            EvdevTouchSource source(queue);
            Delivered delivered;
            const auto error = source.start(delivered.onFrame(), delivered.onClick());
            return error ? error->description : std::string();
        };
        if (!row.unprivileged) {
            EXPECT_EQ(startError(), row.error) << row.name;
            continue;
        }
        // Root reads every node: the user without the udev rule is played by a child that gave
        // its privileges up.
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) {
            const bool dropped = ::setgid(65534) == 0 && ::setuid(65534) == 0;
            ::_exit(dropped && startError() == row.error ? 0 : 1);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << row.name;
    }
}

TEST(EvdevTouchpad, RefusesAPadWithoutMultitouchPositions) {
    UinputDevice pad({.name = "Single touch pad", .multitouch = false});
    const EvdevTouchpad::Opened opened = EvdevTouchpad::open(pad.node(), 0);
    EXPECT_EQ(opened.touchpad, nullptr);
    ASSERT_TRUE(opened.refusal.has_value());
    EXPECT_NE(opened.refusal->find("\"Single touch pad\" has no multitouch position axes"), std::string::npos)
        << *opened.refusal;
    EXPECT_EQ(EvdevTouchpad::open("/dev/input/event999", 0).error, ENOENT);
}

}  // namespace
}  // namespace ostrelle
