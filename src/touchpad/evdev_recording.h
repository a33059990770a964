#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "touchpad/evdev_event.h"
#include "touchpad/touchpad_description.h"

namespace ostrelle {

// One multitouch (ABS_MT_*) axis a device declares.
struct MultitouchAxis {
    std::uint16_t code = 0;
    AxisRange range;

    friend bool operator==(const MultitouchAxis&, const MultitouchAxis&) = default;
};

// What a recording's header tells of its device.
struct RecordedDevice {
    TouchpadDescription description;
    // Every ABS_MT_* axis declared, in code order: a protocol A device needs them all to be
    // converted to slots.
    std::vector<MultitouchAxis> multitouchAxes;

    friend bool operator==(const RecordedDevice&, const RecordedDevice&) = default;
};

// The formats a replay file comes in: the program's own JSON lines, or raw evdev events as the
// common Linux tools write them.
enum class RecordingFormat { jsonLines, evemu, evtest, libinputRecord };
std::string_view toString(RecordingFormat format);

// The format one line of a file's head shows, or nothing when the line could open any of them
// (blank, or a plain '#' comment). A file whose head never says is read as JSON lines.
std::optional<RecordingFormat> formatShownBy(std::string_view line);

// Reads the evdev events of a recording one line at a time, after its device header. Bad input
// throws RecordingError with the line's number.
class EvdevRecordingReader {
  public:
    virtual ~EvdevRecordingReader() = default;

    // The device as the recording describes it; nothing for files without a header (header-less
    // evemu events, an evtest log pasted without its top).
    const std::optional<RecordedDevice>& device() const { return device_; }

    // The next event, or nothing at the end of the input.
    std::optional<EvdevEvent> next();
    // The number of the line last read (0 before the first).
    std::size_t line() const { return line_; }

  protected:
    explicit EvdevRecordingReader(std::istream& input) : input_(input) {}
    // Reads the header up to the first event, which waits for `next`. Called by each format's
    // constructor, once its own state is ready.
    void readHeader();

    // Takes one line (comments and all): sets `event` and returns true for an event line,
    // otherwise learns from the header. Throws std::invalid_argument for a bad line.
    virtual bool takeLine(std::string_view text, EvdevEvent& event) = 0;
    // The header is complete: builds `device_` from what was learned, if anything.
    virtual std::optional<RecordedDevice> describedDevice() const = 0;
    // True once the recording has ended although lines follow (another device's part).
    bool finished_ = false;

  private:
    std::optional<EvdevEvent> readEvent();

    std::istream& input_;
    std::size_t line_ = 0;
    std::string text_;
    std::optional<RecordedDevice> device_;
    std::optional<EvdevEvent> pending_;
    std::size_t pendingLine_ = 0;
};

// The reader for an evdev format; reads the header at once (and may throw RecordingError).
std::unique_ptr<EvdevRecordingReader> openEvdevRecording(RecordingFormat format, std::istream& input);

// An evemu device description (`evemu-describe`'s output), for a recording that has none.
// Throws RecordingError when it describes no device.
RecordedDevice readEvemuDescription(std::istream& input);

}  // namespace ostrelle
