// The live touch source on a real kernel: frames, clicks, counts and start-up failures.
#include "platform/linux/evdev_touch_source.h"

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/linux/evdev_touchpad.h"
#include "touch_delivery.h"
#include "uinput_device.h"

namespace ostrelle {
namespace {

using testing::Delivered;
using testing::UinputDevice;
using testing::waitForReports;
using namespace evdev;

// Ids of stand-ins lie above every tracking id; the rows mark them with this.
constexpr std::int64_t standIn = -1;

TEST(EvdevTouchSource, DeliversFramesOfNormalizedContactsThenClicksAndCountsReports) {
    UinputDevice pad;
    EpollMainQueue queue;
    EvdevTouchSource source(queue);
    source.setOwnWindowCheck([] { return true; });
    Delivered delivered;
    ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt);
    const double started = queue.now();

    // One report a driver sends, and the frame and clicks that must come of it.
    struct Step {
        const char* name;
        std::function<void(UinputDevice&)> write;
        std::optional<std::vector<Contact>> frame;
        std::size_t clicks = 0;
    };
    const auto button = [](int down) { return [down](UinputDevice& d) { d.write(EV_KEY, BTN_LEFT, down); }; };
    const Step steps[] = {
        {"one finger lands",
         [](UinputDevice& d) { d.touch(0, 10, 250, 150), d.fingers(1); },
         {{{10, 0.25, 0.25}}}},
        {"a second finger lands in the far corner",
         [](UinputDevice& d) { d.touch(1, 11, 1000, 600), d.fingers(2); },
         {{{10, 0.25, 0.25}, {11, 1, 1}}}},
        {"a click with nothing moving", button(1), std::nullopt, 1},
        {"the button comes up", button(0), std::nullopt},
        {"a move and a click in one report",
         [&](UinputDevice& d) { d.move(0, 500, 300), button(1)(d); },
         {{{10, 0.5, 0.5}, {11, 1, 1}}},
         1},
        {"the second finger turns out a palm",
         [&](UinputDevice& d) {
             d.write(EV_ABS, ABS_MT_SLOT, 1), d.write(EV_ABS, ABS_MT_TOOL_TYPE, MT_TOOL_PALM), button(0)(d);
         },
         {{{10, 0.5, 0.5}}}},
        {"a third finger the pad counts but gives no slot",
         [](UinputDevice& d) { d.fingers(3); },
         {{{10, 0.5, 0.5}, {standIn, 0.5, 0.5}}}},
        {"every finger lifts", [](UinputDevice& d) { d.lift(0), d.lift(1), d.fingers(0); }, {{}}},
    };
    std::int64_t reports = 0;
    for (const Step& step : steps) {
        const auto before = static_cast<std::ptrdiff_t>(delivered.items.size());
        step.write(pad);
        pad.report();
        ASSERT_TRUE(waitForReports(queue, source, ++reports)) << step.name;
        std::vector<Delivered::Item> items(delivered.items.begin() + before, delivered.items.end());
        ASSERT_EQ(items.size(), (step.frame ? 1U : 0U) + step.clicks) << step.name;
        if (step.frame) {
            ASSERT_TRUE(items.front().frame) << step.name << ": the frame comes before its clicks";
            for (Contact& contact : *items.front().frame)
                if (contact.id > 0xffffffffLL) contact.id = standIn;
            EXPECT_EQ(*items.front().frame, *step.frame) << step.name;
            // The monotonic clock, as the queue's: not the wall clock evdev uses by default.
            EXPECT_GE(items.front().time, started) << step.name;
            EXPECT_LE(items.front().time, queue.now()) << step.name;
            items.erase(items.begin());
        }
        for (const auto& click : items) EXPECT_TRUE(!click.frame && click.onOwnUI) << step.name;
    }
    // Every report but the last left a finger down.
    EXPECT_EQ(source.eventCounts(), (TouchSource::EventCounts{reports, reports - 1}));

    // A second start replaces the first: one reader, so a report arrives once, counted afresh,
    // and a click is never over our window without a check.
    const std::size_t deliveredBefore = delivered.items.size();
    source.setOwnWindowCheck({});
    Delivered again;
    ASSERT_EQ(source.start(again.onFrame(), again.onClick()), std::nullopt);
    button(1)(pad);
    pad.report();
    ASSERT_TRUE(waitForReports(queue, source, 1));
    ASSERT_EQ(again.items.size(), 1U);
    EXPECT_FALSE(again.items.front().onOwnUI);
    EXPECT_EQ(source.eventCounts(), (TouchSource::EventCounts{1, 0}));
    EXPECT_EQ(delivered.items.size(), deliveredBefore) << "nothing reaches the handlers of a replaced start";
}

TEST(EvdevTouchSource, StartFailsWithTheStepThatFixesIt) {
    struct Row {
        const char* name;
        std::optional<testing::DeviceShape> device;
        bool unprivileged;
        std::string_view error;
    };
    const Row rows[] = {
        {"no input device", std::nullopt, false, EvdevTouchSource::noTouchpadText},
        {"only a keyboard", testing::DeviceShape{.keyboard = true}, false, EvdevTouchSource::noTouchpadText},
        {"a touchpad the user may not read", testing::DeviceShape{}, true,
         EvdevTouchSource::noPermissionText},
    };
    for (const Row& row : rows) {
        std::optional<UinputDevice> device;
        if (row.device) device.emplace(*row.device);
        const auto startFails = [&row] {
            EpollMainQueue queue;
            EvdevTouchSource source(queue);
            const auto error = source.start({}, {});
            return error && error->description == row.error;
        };
        if (!row.unprivileged) {
            EXPECT_TRUE(startFails()) << row.name;
            continue;
        }
        // Root reads every node: the user without the udev rule is played by a child that gave
        // its privileges up.
        const pid_t child = ::fork();
        ASSERT_GE(child, 0);
        if (child == 0) ::_exit(::setgid(65534) == 0 && ::setuid(65534) == 0 && startFails() ? 0 : 1);
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << row.name;
    }
}

TEST(EvdevTouchpad, RefusesAPadWithoutMultitouchPositions) {
    UinputDevice pad({.name = "Single touch pad", .multitouch = false});
    const EvdevTouchpad::Opened opened = EvdevTouchpad::open(pad.node(), 0);
    EXPECT_EQ(opened.touchpad, nullptr);
    EXPECT_NE(opened.refusal.value_or("").find("\"Single touch pad\" has no multitouch position axes"),
              std::string::npos);
    EXPECT_EQ(EvdevTouchpad::open("/dev/input/event999", 0).error, ENOENT);
}

}  // namespace
}  // namespace ostrelle
