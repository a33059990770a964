// evtest logs, the text users paste into bug reports:
//   Input device name: "SynPS/2 Synaptics TouchPad"
//     Event type 3 (EV_ABS)
//       Event code 53 (ABS_MT_POSITION_X)
//         Min     1472
//         Max     5472
//   Property type 2 (INPUT_PROP_BUTTONPAD)
//   Event: time 1330050188.628846, type 3 (EV_ABS), code 53 (ABS_MT_POSITION_X), value 4888
//   Event: time 1330050188.628846, -------------- SYN_REPORT ------------
// Any other line (device lists, prompts, evtest's chatter) is passed over.
#include <fmt/format.h>

#include <array>
#include <stdexcept>

#include "touchpad/recording_formats.h"
#include "touchpad/recording_text.h"

namespace ostrelle {

namespace {

using namespace recording_text;

constexpr std::string_view eventStart = "Event: time ";
constexpr std::uint16_t evMsc = 0x04;

struct SyncName {
    std::string_view name;
    std::uint16_t code;
};
// evtest writes synchronisation events as a banner with the code's name only.
constexpr std::array syncNames{SyncName{"SYN_REPORT", evdev::SYN_REPORT}, SyncName{"SYN_CONFIG", 1},
                               SyncName{"SYN_MT_REPORT", evdev::SYN_MT_REPORT},
                               SyncName{"SYN_DROPPED", evdev::SYN_DROPPED}};

// The number after `key` ("type 3 (EV_ABS)" → 3), in `text`.
std::string_view numberAfter(std::string_view text, std::string_view key) {
    const std::size_t at = text.find(key);
    if (at == std::string_view::npos)
        throw std::invalid_argument(fmt::format("the event has no {}", trimmed(key)));
    const std::string_view rest = text.substr(at + key.size());
    return rest.substr(0, rest.find_first_of(" ,(\t"));
}

class EvtestReader : public EvdevRecordingReader {
  public:
    explicit EvtestReader(std::istream& input) : EvdevRecordingReader(input) { readHeader(); }

  private:
    bool takeLine(std::string_view text, EvdevEvent& event) override {
        const std::string_view line = trimmed(text);
        if (line.starts_with(eventStart)) return readEvent(line.substr(eventStart.size()), event);
        if (line.starts_with("Input device name:")) {
            header_.seen = true;
            std::string_view name = trimmed(line.substr(line.find(':') + 1));
            if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
                name = name.substr(1, name.size() - 2);
            header_.name = std::string(name);
        } else if (line.starts_with("Event type ")) {
            header_.seen = true;
            absSection_ = integer(numberAfter(line, "Event type "), "event type") == evdev::EV_ABS;
            axis_.reset();
        } else if (line.starts_with("Event code ")) {
            axis_.reset();
            if (absSection_) {
                const std::int64_t code = integer(numberAfter(line, "Event code "), "axis code");
                if (code < 0 || code > evdev::ABS_MAX)
                    throw std::invalid_argument(fmt::format("axis code {} is out of range", code));
                axis_ = std::uint16_t(code);
                header_.axes[*axis_] = {};
            }
        } else if (line.starts_with("Property type ")) {
            header_.seen = true;
            header_.properties.insert(int(integer(numberAfter(line, "Property type "), "property")));
        } else if (axis_) {
            readAxisValue(line);
        }
        return false;
    }

    std::optional<RecordedDevice> describedDevice() const override { return header_.device(); }

    void readAxisValue(std::string_view line) {
        const auto parts = fields(line);
        if (parts.size() != 2) return;
        AxisRange& range = header_.axes[*axis_];
        if (parts[0] == "Min") range.minimum = int32(parts[1], "minimum");
        if (parts[0] == "Max") range.maximum = int32(parts[1], "maximum");
        if (parts[0] == "Resolution") range.resolution = int32(parts[1], "resolution");
    }

    static bool readEvent(std::string_view rest, EvdevEvent& event) {
        const std::size_t comma = rest.find(',');
        if (comma == std::string_view::npos)
            throw std::invalid_argument("the event has nothing after its time");
        event.time = seconds(trimmed(rest.substr(0, comma)));
        const std::string_view what = rest.substr(comma + 1);
        if (what.find("type ") == std::string_view::npos) {
            for (const SyncName& sync : syncNames) {
                if (what.find(sync.name) != std::string_view::npos) {
                    event.type = evdev::EV_SYN;
                    event.code = sync.code;
                    event.value = 0;
                    return true;
                }
            }
            throw std::invalid_argument(fmt::format("\"{}\" is no event evtest writes", trimmed(what)));
        }
        event.type = eventType(integer(numberAfter(what, "type "), "event type"));
        event.code = eventCode(integer(numberAfter(what, "code "), "event code"));
        // Scan codes are written in hex; nothing here reads them.
        event.value = event.type == evMsc ? 0 : int32(numberAfter(what, "value "), "value");
        return true;
    }

    DeviceHeader header_;
    bool absSection_ = false;
    std::optional<std::uint16_t> axis_;  // the axis whose Min/Max lines follow
};

}  // namespace

std::unique_ptr<EvdevRecordingReader> openEvtest(std::istream& input) {
    return std::make_unique<EvtestReader>(input);
}

}  // namespace ostrelle
