#include "actions/recorded_event.h"

namespace ostrelle {
namespace {

// A media key's data1 carries the key above bit 16 and, in its second byte, 0x0A for down
// and 0x0B for up.
constexpr std::int64_t mediaKeyShift = 16;
constexpr std::int64_t mediaStateMask = 0xFF00;
constexpr std::int64_t mediaDownState = 0x0A00;

struct ToJSON {
    nlohmann::json operator()(const recorded::Key& e) const {
        return {{"key", e.key}, {"down", e.down}, {"flags", e.flags}};
    }
    nlohmann::json operator()(const recorded::LinuxKey& e) const {
        return {{"linuxKey", e.code}, {"down", e.down}};
    }
    nlohmann::json operator()(const recorded::Mouse& e) const {
        return {{"mouse", toString(e.type)}, {"x", e.location.x}, {"y", e.location.y}, {"flags", e.flags}};
    }
    nlohmann::json operator()(const recorded::MediaKey& e) const {
        return {{"media", e.data1 >> mediaKeyShift},
                {"down", (e.data1 & mediaStateMask) == mediaDownState},
                {"data1", e.data1},
                {"flags", e.flags}};
    }
    nlohmann::json operator()(const recorded::OpenApplication& e) const { return {{"open", e.path}}; }
    nlohmann::json operator()(const recorded::DockNotification& e) const { return {{"dock", e.name}}; }
    nlohmann::json operator()(const recorded::Press& e) const {
        return {{"press", e.element}, {"action", e.action}};
    }
    nlohmann::json operator()(const recorded::PasteboardSave&) const { return {{"pasteboard", "save"}}; }
    nlohmann::json operator()(const recorded::PasteboardRestore& e) const {
        return {{"pasteboard", "restore"}, {"items", e.items.size()}};
    }
    nlohmann::json operator()(const recorded::PasteboardSet& e) const {
        return {{"pasteboard", "set"}, {"string", e.text}};
    }
    nlohmann::json operator()(const recorded::Beep&) const { return {{"beep", true}}; }
    nlohmann::json operator()(const recorded::Haptic&) const { return {{"haptic", true}}; }
};

}  // namespace

nlohmann::json toJSON(const RecordedEvent& event) {
    return std::visit(ToJSON{}, event);
}

}  // namespace ostrelle
