// The live touch source recovers: touchpads plugged in after start, unplugged and plugged in
// again, and events the kernel dropped.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "platform/linux/evdev_touch_source.h"
#include "touch_delivery.h"
#include "touchpad/frame_assembler.h"
#include "uinput_device.h"

namespace ostrelle {
namespace {

using testing::Delivered;
using testing::runUntil;
using testing::UinputDevice;

// How soon a touchpad plugged in must be read.
constexpr auto hotPlugLimit = std::chrono::seconds(2);

// The id of the last frame's contact from this tracking id that is none of `others`, if any.
std::optional<std::int64_t> newContact(const Delivered& delivered, std::int32_t trackingId,
                                       const std::vector<std::int64_t>& others) {
    for (const Contact& contact : delivered.lastFrame())
        if (contact.id % FrameAssembler::idSpan == trackingId && std::ranges::count(others, contact.id) == 0)
            return contact.id;
    return std::nullopt;
}

TEST(TouchSourceRecovery, TouchpadsPluggedInLaterOrAgainAreReadWithIdsOfTheirOwn) {
    UinputDevice first({.name = "first pad"});
    EpollMainQueue queue;
    EvdevTouchSource source(queue);
    Delivered delivered;
    // A finger already down when reading starts counts from the next report.
    first.touch(0, 5, 0, 0);
    first.fingers(1);
    first.report();
    ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt);
    first.move(0, 1, 0);
    first.report();
    ASSERT_TRUE(runUntil(queue, [&] { return newContact(delivered, 5, {}) == 5; }));

    std::vector<std::int64_t> ids = {5};
    for (const char* plug : {"plugged in after start", "plugged in again"}) {
        auto second = std::make_unique<UinputDevice>(testing::DeviceShape{.name = "second pad"});
        // Its finger moves on until read: its id is not known before the pad is opened.
        second->touch(0, 5, 100, 100);
        second->fingers(1);
        std::optional<std::int64_t> id;
        const auto deadline = std::chrono::steady_clock::now() + hotPlugLimit;
        for (std::int32_t x = 101; !id && std::chrono::steady_clock::now() < deadline; ++x) {
            second->move(0, x, 100);
            second->report();
            runUntil(
                queue, [&] { return (id = newContact(delivered, 5, ids)).has_value(); },
                std::chrono::milliseconds(50));
        }
        ASSERT_TRUE(id.has_value()) << plug << ": not read within " << hotPlugLimit.count() << " s";
        EXPECT_EQ(newContact(delivered, 5, {*id}), 5) << plug << ": one frame holds both pads' fingers";
        ids.push_back(*id);
        // Unplugged with a finger down: the finger lifts with it.
        second.reset();
        ASSERT_TRUE(runUntil(queue, [&] {
            return delivered.lastFrame() == std::vector<Contact>{{5, 0.001, 0}};
        })) << plug;
    }
    EXPECT_EQ(std::set<std::int64_t>(ids.begin(), ids.end()).size(), 3U) << "ids stay distinct across pads";
}

TEST(TouchSourceRecovery, AfterTheKernelDroppedEventsTheStateIsTakenAfresh) {
    struct Row {
        const char* name;
        bool firstLifts;
        std::vector<Contact> after;
    };
    const Row rows[] = {
        {"a finger lifted while events were lost", true, {{2, 0.7, 0.5}}},
        {"both fingers stayed", false, {{1, 0.1, 0.1}, {2, 0.7, 0.5}}},
    };
    for (const Row& row : rows) {
        UinputDevice pad;
        EpollMainQueue queue;
        EvdevTouchSource source(queue);
        Delivered delivered;
        ASSERT_EQ(source.start(delivered.onFrame(), delivered.onClick()), std::nullopt);
        pad.touch(0, 1, 100, 60);
        pad.touch(1, 2, 500, 300);
        pad.fingers(2);
        pad.report();
        ASSERT_TRUE(runUntil(queue, [&] { return delivered.lastFrame().size() == 2; })) << row.name;

        // Far more reports than the kernel keeps for a reader that does not read.
        source.holdReaderForTesting(true);
        constexpr int flood = 2000;
        for (int i = 0; i < flood; ++i) {
            pad.move(1, 200 + i % 400, 100 + i % 200);
            pad.report();
        }
        if (row.firstLifts) pad.lift(0);
        pad.fingers(row.firstLifts ? 1 : 2);
        pad.move(1, 700, 300);
        if (!row.firstLifts) pad.move(0, 100, 60);
        pad.report();
        source.holdReaderForTesting(false);

        ASSERT_TRUE(runUntil(queue, [&] { return delivered.lastFrame() == row.after; }))
            << row.name << ": " << ::testing::PrintToString(delivered.lastFrame());
        EXPECT_LT(delivered.items.size(), static_cast<std::size_t>(flood))
            << row.name << ": the kernel dropped events";
    }
}

}  // namespace
}  // namespace ostrelle
