#pragma once

#include <chrono>
#include <functional>
#include <optional>
#include <ostream>
#include <vector>

#include "engine/touch_source.h"
#include "platform/linux/epoll_main_queue.h"

namespace ostrelle {

inline std::ostream& operator<<(std::ostream& out, const Contact& contact) {
    return out << "(" << contact.id << ", " << contact.x << ", " << contact.y << ")";
}

namespace testing {

// What a touch source delivered, in order: frames, and clicks (no frame).
struct Delivered {
    struct Item {
        std::optional<std::vector<Contact>> frame;
        double time = 0;
        bool onOwnUI = false;
    };
    std::vector<Item> items;

    TouchSource::FrameHandler onFrame() {
        return [this](std::span<const Contact> contacts, double time) {
            items.push_back({std::vector<Contact>(contacts.begin(), contacts.end()), time});
        };
    }
    TouchSource::ClickHandler onClick() {
        return [this](bool onOwnUI) { items.push_back({std::nullopt, 0, onOwnUI}); };
    }
    std::vector<Contact> lastFrame() const {
        for (auto it = items.rbegin(); it != items.rend(); ++it)
            if (it->frame) return *it->frame;
        return {};
    }
};

// Runs the service's own queue until `done` holds (looked at every few milliseconds, as it may
// change on the reader's thread), then what was posted by then; false if `limit` passed first.
inline bool runUntil(EpollMainQueue& queue, const std::function<bool()>& done,
                     std::chrono::milliseconds limit = std::chrono::seconds(5)) {
    const double deadline = queue.now() + std::chrono::duration<double>(limit).count();
    bool met = false;
    std::function<void()> check = [&] {
        met = done();
        if (met || queue.now() >= deadline)
            queue.post([&queue] { queue.quit(); });
        else
            queue.postAfter(0.005, check);
    };
    queue.post(check);
    queue.run();
    return met;
}

// Until the source has read `reports` reports in all; it posts a report's delivery before counting it.
inline bool waitForReports(EpollMainQueue& queue, const TouchSource& source, std::int64_t reports) {
    return runUntil(queue, [&] { return source.eventCounts().all >= reports; });
}

}  // namespace testing
}  // namespace ostrelle
