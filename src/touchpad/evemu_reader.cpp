// evemu recordings: "N:", "I:", "P:", "B:", "A:" lines describe the device, "E:" lines are events.
#include <fmt/format.h>

#include <stdexcept>

#include "touchpad/recording_formats.h"
#include "touchpad/recording_text.h"

namespace ostrelle {

namespace {

using namespace recording_text;

class EvemuReader : public EvdevRecordingReader {
  public:
    explicit EvemuReader(std::istream& input) : EvdevRecordingReader(input) { readHeader(); }

  private:
    bool takeLine(std::string_view text, EvdevEvent& event) override {
        // Comments may end any line since format 1.1.
        const std::string_view line = withoutComment(text);
        if (line.empty()) return false;
        if (line.size() < 2 || line[1] != ':') {
            throw std::invalid_argument(fmt::format("\"{}\" is not an evemu line", line));
        }
        const std::string_view rest = trimmed(line.substr(2));
        switch (line[0]) {
            case 'E':
                return readEvent(rest, event);
            case 'N':
                header_.seen = true;
                header_.name = std::string(rest);
                return false;
            case 'P':
                readProperties(rest);
                return false;
            case 'A':
                readAxis(rest);
                return false;
            case 'I':
            case 'B':
            case 'S':
                return false;
            default:
                throw std::invalid_argument(fmt::format("\"{}\" is not an evemu line", line));
        }
    }

    std::optional<RecordedDevice> describedDevice() const override { return header_.device(); }

    static bool readEvent(std::string_view rest, EvdevEvent& event) {
        const auto parts = fields(rest);
        if (parts.size() != 4) {
            throw std::invalid_argument("an event line needs a time, a type, a code and a value");
        }
        event.time = seconds(parts[0]);
        event.type = eventType(integer(parts[1], "event type", 16));
        event.code = eventCode(integer(parts[2], "event code", 16));
        event.value = int32(parts[3], "value");
        return true;
    }

    // Each "P:" line holds the next eight bytes of the property bits.
    void readProperties(std::string_view rest) {
        header_.seen = true;
        for (const std::string_view byte : fields(rest)) {
            const std::int64_t bits = integer(byte, "property byte", 16);
            for (int bit = 0; bit < 8; ++bit) {
                if ((bits >> bit) & 1) header_.properties.insert(propertyByte_ * 8 + bit);
            }
            ++propertyByte_;
        }
    }

    // "A: code min max fuzz flat [resolution]": old files have no resolution.
    void readAxis(std::string_view rest) {
        header_.seen = true;
        const auto parts = fields(rest);
        if (parts.size() != 5 && parts.size() != 6) {
            throw std::invalid_argument(
                "an axis line needs a code, minimum, maximum, fuzz, flat and resolution");
        }
        const std::int64_t code = integer(parts[0], "axis code", 16);
        if (code < 0 || code > evdev::ABS_MAX)
            throw std::invalid_argument(fmt::format("axis code {} is out of range", code));
        const AxisRange range{int32(parts[1], "minimum"), int32(parts[2], "maximum"),
                              parts.size() == 6 ? int32(parts[5], "resolution") : 0};
        header_.axes[std::uint16_t(code)] = range;
    }

    DeviceHeader header_;
    int propertyByte_ = 0;
};

}  // namespace

std::unique_ptr<EvdevRecordingReader> openEvemu(std::istream& input) {
    return std::make_unique<EvemuReader>(input);
}

}  // namespace ostrelle
