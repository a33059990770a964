#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <ostream>
#include <vector>

#include "engine/touch_source.h"
#include "test_main_queue.h"

namespace ostrelle::testing {

// What a touch source delivered, in order: frames and clicks.
struct Delivered {
    struct Item {
        std::optional<std::vector<Contact>> frame;  // else a click
        double time = 0;
        bool onOwnUI = false;
    };
    std::vector<Item> items;

    TouchSource::FrameHandler onFrame() {
        return [this](std::span<const Contact> contacts, double time) {
            items.push_back({std::vector<Contact>(contacts.begin(), contacts.end()), time, false});
        };
    }
    TouchSource::ClickHandler onClick() {
        return [this](bool onOwnUI) { items.push_back({std::nullopt, 0, onOwnUI}); };
    }
    std::optional<std::vector<Contact>> lastFrame() const {
        for (auto it = items.rbegin(); it != items.rend(); ++it)
            if (it->frame) return it->frame;
        return std::nullopt;
    }
};

// Contacts as (id, x, y), to compare and print.
struct ExpectedContact {
    std::int64_t id = 0;
    double x = 0;
    double y = 0;
};

inline bool matches(const std::vector<Contact>& contacts, const std::vector<ExpectedContact>& expected) {
    if (contacts.size() != expected.size()) return false;
    for (std::size_t i = 0; i < contacts.size(); ++i) {
        if (contacts[i].id != expected[i].id || std::abs(contacts[i].x - expected[i].x) > 1e-9 ||
            std::abs(contacts[i].y - expected[i].y) > 1e-9)
            return false;
    }
    return true;
}

inline std::ostream& operator<<(std::ostream& out, const Contact& contact) {
    return out << "(" << contact.id << ", " << contact.x << ", " << contact.y << ")";
}

// Waits, running the queue, until the source has read `reports` reports in all.
inline bool waitForReports(TestMainQueue& queue, const TouchSource& source, std::int64_t reports,
                           std::chrono::milliseconds limit = std::chrono::seconds(5)) {
    const bool read = queue.runUntil([&] { return source.eventCounts().all >= reports; }, limit);
    queue.runDue();
    return read;
}

}  // namespace ostrelle::testing
