// Reading evemu, evtest and `libinput record` files: format detection, device headers, events,
// and bad lines named by number.
#include "touchpad/evdev_recording.h"

#include <gmock/gmock.h>

#include <sstream>
#include <tuple>

#include "recognition/recording.h"

namespace ostrelle {
namespace {

using namespace evdev;

constexpr const char* evemuFile = R"(# EVEMU 1.3
N: Pad # a comment
P: 09 00 00 00 00 00 00 00
A: 00 0 100 0 0 0
A: 2f 0 1 0 0 0
A: 35 100 1100 8 0 12
A: 36 0 500 8 0 10
E: 0.000000 0003 0039 7
E: 0.000001 0003 0035 600
E: 0.010000 0000 0000 0000
)";

constexpr const char* evtestFile = R"(Input device name: "Pad"
  Event type 3 (EV_ABS)
    Event code 47 (ABS_MT_SLOT)
      Max        1
    Event code 53 (ABS_MT_POSITION_X)
      Value      0
      Min      100
      Max     1100
      Resolution      12
    Event code 54 (ABS_MT_POSITION_Y)
      Max      500
      Resolution      10
  Property type 3 (INPUT_PROP_SEMI_MT)
Event: time 0.000000, type 3 (EV_ABS), code 57 (ABS_MT_TRACKING_ID), value 7
Event: time 0.000001, type 3 (EV_ABS), code 53 (ABS_MT_POSITION_X), value 600
Event: time 0.000001, type 4 (EV_MSC), code 4 (MSC_SCAN), value 90001
Event: time 0.010000, -------------- SYN_REPORT ------------
Event: time 0.020000, >>>>>>>>>>>>>> SYN_DROPPED <<<<<<<<<<<<
)";

constexpr const char* libinputFile = R"(# libinput record
version: 1
devices:
- node: /dev/input/event5
  evdev:
    name: "Pad"
    absinfo:
      47: [0, 1, 0, 0, 0]
      53: [100, 1100, 8, 0, 12]
      54: [0, 500, 8, 0, 10]
    properties: [0, 3]
  udev:
    properties:
    - ID_INPUT_TOUCHPAD=1
  events:
  - evdev:
    - [  0,      0,   3,  57,     7] # EV_ABS / ABS_MT_TRACKING_ID      7
    - [  0,      1,   3,  53,   600] # EV_ABS / ABS_MT_POSITION_X     600
    - [  0,  10000,   0,   0,     0] # ------------ SYN_REPORT (0) ------- +10ms
  - libinput:
    - [  9,      9,   3,  53,   600]
- node: /dev/input/event6
  events:
  - evdev:
    - [  1,      0,   1,  30,     1]
)";

// What each header above declares: a semi-multitouch pad, its non-multitouch axes left out.
// Built on call: GCC 12 at -O3 takes a static one's string for uninitialized.
RecordedDevice pad() {
    return {{"Pad", AxisRange{100, 1100, 12}, AxisRange{0, 500, 10}, 2, true},
            {{ABS_MT_POSITION_X, {100, 1100, 12}}, {ABS_MT_POSITION_Y, {0, 500, 10}}}};
}

struct Read {
    std::optional<RecordedDevice> device;
    std::vector<EvdevEvent> events;
    std::string error;                                    // "LINE: problem" of the first bad line
    RecordingFormat format = RecordingFormat::jsonLines;  // as the first line that shows one tells

    friend bool operator==(const Read&, const Read&) = default;
};

Read readAll(RecordingFormat format, const std::string& text) {
    std::istringstream input(text);
    Read read;
    for (std::string line; std::getline(input, line) && read.format == RecordingFormat::jsonLines;)
        read.format = formatShownBy(line).value_or(RecordingFormat::jsonLines);
    input = std::istringstream(text);
    try {
        const auto reader = openEvdevRecording(format, input);
        read.device = reader->device();
        while (const auto event = reader->next()) read.events.push_back(*event);
    } catch (const RecordingError& error) {
        read.error = std::to_string(error.line()) + ": " + error.problem();
    }
    return read;
}

TEST(EvdevRecording, ReadsEachFormat) {
    using enum RecordingFormat;
    const std::vector<EvdevEvent> touch{{0.0, EV_ABS, ABS_MT_TRACKING_ID, 7},
                                        {0.000001, EV_ABS, ABS_MT_POSITION_X, 600},
                                        {0.01, EV_SYN, SYN_REPORT, 0}};
    std::vector<EvdevEvent> evtestEvents = touch;
    evtestEvents.insert(evtestEvents.begin() + 2, {0.000001, 4, 4, 0});
    evtestEvents.push_back({0.02, EV_SYN, SYN_DROPPED, 0});
    const std::vector<std::tuple<const char*, std::string, Read>> rows = {
        {"evemu", evemuFile, {pad(), touch, "", evemu}},
        {"evemu without a header",
         "\n# from a bug\nE: 0.5 0001 0110 1\n",
         {{}, {{0.5, EV_KEY, BTN_LEFT, 1}}, "", evemu}},
        {"evtest with its header", evtestFile, {pad(), evtestEvents, "", evtest}},
        {"evtest without its header",
         "Event: time 3.25, type 1 (EV_KEY), code 272 (BTN_LEFT), value 1\n",
         {{}, {{3.25, EV_KEY, BTN_LEFT, 1}}, "", evtest}},
        {"libinput record, first device only", libinputFile, {pad(), touch, "", libinputRecord}},
    };
    for (const auto& [name, text, expected] : rows)
        EXPECT_EQ(readAll(expected.format, text), expected) << name;
    EXPECT_EQ(readAll(evemu, "# a replay\n{\"t\": 0, \"touches\": []}\n").format, jsonLines);
}

TEST(EvdevRecording, BadLinesAreNamed) {
    using enum RecordingFormat;
    const std::vector<std::tuple<const char*, RecordingFormat, std::string, std::string>> rows = {
        {"evemu: unknown line", evemu, "N: Pad\nhello\n", "2: \"hello\" is not an evemu line"},
        {"evemu: short event", evemu, "E: 0.1 0003 0035\n",
         "1: an event line needs a time, a type, a code and a value"},
        {"evemu: bad hex code", evemu, "E: 0.1 0003 00zz 5\n", "1: event code \"00zz\" is not a hex number"},
        {"evemu: value out of range", evemu, "E: 0.1 0003 0035 4294967296\n",
         "1: value 4294967296 is out of range"},
        {"evemu: axis line too short", evemu, "A: 35 0 100\n",
         "1: an axis line needs a code, minimum, maximum, fuzz, flat and resolution"},
        {"evtest: event without a value", evtest,
         "\n\nEvent: time 1.0, type 3 (EV_ABS), code 53 (ABS_MT_POSITION_X)\n", "3: the event has no value"},
        {"evtest: unknown banner", evtest, "Event: time 1.0, ---- SYN_WHAT ----\n",
         "1: \"---- SYN_WHAT ----\" is no event evtest writes"},
        {"libinput: short event", libinputRecord, "events:\n- evdev:\n  - [0, 0, 3, 53]\n",
         "3: an event needs [sec, usec, type, code, value]"},
        {"libinput: unclosed list", libinputRecord, "absinfo:\n  53: [0, 100\n",
         "2: a list lacks its closing ]"},
    };
    for (const auto& [name, format, text, error] : rows)
        EXPECT_EQ(readAll(format, text).error, error) << name;
}

}  // namespace
}  // namespace ostrelle
