// `libinput record` files (YAML). Only what a touchpad needs is read, line by line, from the
// first device: its name, its axes ("absinfo: {code: [min, max, fuzz, flat, resolution]}"),
// its properties, and its events ("- evdev:" lists of "- [sec, usec, type, code, value]").
#include <fmt/format.h>

#include <stdexcept>

#include "touchpad/recording_formats.h"
#include "touchpad/recording_text.h"

namespace ostrelle {

namespace {

using namespace recording_text;

constexpr double microseconds = 1e-6;  // seconds

// The items of an inline list "[a, b, c]", or nothing when `text` holds no list.
std::optional<std::vector<std::string_view>> inlineList(std::string_view text) {
    text = trimmed(text);
    if (!text.starts_with('[')) return std::nullopt;
    const std::size_t end = text.find(']');
    if (end == std::string_view::npos) throw std::invalid_argument("a list lacks its closing ]");
    return fields(text.substr(1, end - 1));
}

class LibinputRecordReader : public EvdevRecordingReader {
  public:
    explicit LibinputRecordReader(std::istream& input) : EvdevRecordingReader(input) { readHeader(); }

  private:
    bool takeLine(std::string_view text, EvdevEvent& event) override {
        const std::string_view line = withoutComment(text);
        if (line.empty()) return false;
        if (line.starts_with("- node:") && ++devices_ > 1) {
            // A recording of several devices: the first one's part has ended.
            finished_ = true;
            return false;
        }
        if (inAbsinfo_) {
            if (readAxis(line)) return false;
            inAbsinfo_ = false;
        }
        if (line.starts_with("name:") && header_.name.empty()) {
            std::string_view name = trimmed(trimmed(text).substr(5));
            if (name.size() >= 2 && name.front() == '"' && name.back() == '"')
                name = name.substr(1, name.size() - 2);
            header_.seen = true;
            header_.name = std::string(name);
        } else if (line == "absinfo:") {
            header_.seen = true;
            inAbsinfo_ = true;
        } else if (line.starts_with("properties:")) {
            // The evdev properties are a list of numbers; udev's are strings on lines of their own.
            if (const auto items = inlineList(line.substr(11))) {
                for (const std::string_view item : *items) header_.properties.insert(int32(item, "property"));
            }
        } else if (line == "events:") {
            inEvents_ = true;
        } else if (inEvents_ && line.starts_with("- ") && line.ends_with(":")) {
            inEvdev_ = line == "- evdev:";
        } else if (inEvdev_ && line.starts_with("- [")) {
            return readEvent(line.substr(2), event);
        }
        return false;
    }

    std::optional<RecordedDevice> describedDevice() const override { return header_.device(); }

    // "53: [0, 4089, 0, 0, 42]"; false for a line of another kind (the block has ended).
    bool readAxis(std::string_view line) {
        const std::size_t colon = line.find(':');
        if (colon == std::string_view::npos || colon == 0 ||
            line.substr(0, colon).find_first_not_of("0123456789") != std::string_view::npos) {
            return false;
        }
        const auto items = inlineList(line.substr(colon + 1));
        if (!items) return false;
        const std::int64_t code = integer(trimmed(line.substr(0, colon)), "axis code");
        if (code < 0 || code > evdev::ABS_MAX)
            throw std::invalid_argument(fmt::format("axis code {} is out of range", code));
        if (items->size() < 2) throw std::invalid_argument("an axis needs at least a minimum and a maximum");
        header_.axes[std::uint16_t(code)] = {int32((*items)[0], "minimum"), int32((*items)[1], "maximum"),
                                             items->size() >= 5 ? int32((*items)[4], "resolution") : 0};
        return true;
    }

    static bool readEvent(std::string_view text, EvdevEvent& event) {
        const auto items = inlineList(text);
        if (!items || items->size() != 5) {
            throw std::invalid_argument("an event needs [sec, usec, type, code, value]");
        }
        const std::int64_t sec = integer((*items)[0], "seconds");
        const std::int64_t usec = integer((*items)[1], "microseconds");
        if (sec < 0 || usec < 0) throw std::invalid_argument("the event's time is negative");
        event.time = double(sec) + double(usec) * microseconds;
        event.type = eventType(integer((*items)[2], "event type"));
        event.code = eventCode(integer((*items)[3], "event code"));
        event.value = int32((*items)[4], "value");
        return true;
    }

    DeviceHeader header_;
    int devices_ = 0;
    bool inAbsinfo_ = false;
    bool inEvents_ = false;
    bool inEvdev_ = false;
};

}  // namespace

std::unique_ptr<EvdevRecordingReader> openLibinputRecord(std::istream& input) {
    return std::make_unique<LibinputRecordReader>(input);
}

}  // namespace ostrelle
