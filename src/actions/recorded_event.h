#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <ostream>
#include <string>
#include <type_traits>
#include <variant>
#include <vector>

#include "actions/system_port.h"

namespace ostrelle {

// What a dry run saw the actions do to the system, one value per effect, in order.
namespace recorded {

struct Key {
    std::uint16_t key = 0;
    bool down = false;
    EventFlags flags = 0;
    friend bool operator==(const Key&, const Key&) = default;
};

// A key or button in the Linux input numbering, as Linux desktops get their actions.
struct LinuxKey {
    std::uint16_t code = 0;
    bool down = false;
    friend bool operator==(const LinuxKey&, const LinuxKey&) = default;
};

struct Mouse {
    MouseEventType type = MouseEventType::leftDown;
    Point location;
    EventFlags flags = 0;
    friend bool operator==(const Mouse&, const Mouse&) = default;
};

struct MediaKey {
    EventFlags flags = 0;
    std::int64_t data1 = 0;
    friend bool operator==(const MediaKey&, const MediaKey&) = default;
};

struct OpenApplication {
    std::string path;
    friend bool operator==(const OpenApplication&, const OpenApplication&) = default;
};

struct DockNotification {
    std::string name;
    friend bool operator==(const DockNotification&, const DockNotification&) = default;
};

// An accessibility action performed on an element of the fake tree, named by the element's name.
struct Press {
    std::string element;
    std::string action;
    friend bool operator==(const Press&, const Press&) = default;
};

struct PasteboardSave {
    friend bool operator==(const PasteboardSave&, const PasteboardSave&) = default;
};

struct PasteboardRestore {
    std::vector<PasteboardItem> items;
    friend bool operator==(const PasteboardRestore&, const PasteboardRestore&) = default;
};

struct PasteboardSet {
    std::string text;
    friend bool operator==(const PasteboardSet&, const PasteboardSet&) = default;
};

struct Beep {
    friend bool operator==(const Beep&, const Beep&) = default;
};

struct Haptic {
    friend bool operator==(const Haptic&, const Haptic&) = default;
};

}  // namespace recorded

using RecordedEvent = std::variant<recorded::Key, recorded::LinuxKey, recorded::Mouse, recorded::MediaKey,
                                   recorded::OpenApplication, recorded::DockNotification, recorded::Press,
                                   recorded::PasteboardSave, recorded::PasteboardRestore,
                                   recorded::PasteboardSet, recorded::Beep, recorded::Haptic>;

// One recorded effect as a JSON object, as the command line prints it:
// {"key": 124, "down": true, "flags": 11534336}, {"linuxKey": 29, "down": true},
// {"media": 16, "down": true, "data1": …, "flags": 2560}, …
nlohmann::json toJSON(const RecordedEvent& event);

namespace recorded {

// Readable test messages: each recorded value prints as its JSON line.
template <typename Event>
requires std::is_constructible_v<RecordedEvent, const Event&> std::ostream& operator<<(std::ostream& out,
                                                                                       const Event& event) {
    return out << toJSON(RecordedEvent{event}).dump();
}

}  // namespace recorded
}  // namespace ostrelle
