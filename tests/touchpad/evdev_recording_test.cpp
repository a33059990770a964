// Reading evemu, evtest and `libinput record` files: format detection, device headers, events,
// and bad lines named by number.
#include "touchpad/evdev_recording.h"

#include <gmock/gmock.h>

#include <sstream>

#include "recognition/recording.h"

namespace ostrelle {
namespace {

using namespace evdev;

constexpr const char* evemuFile = R"(# EVEMU 1.3
# Input device name: "Pad"
N: Pad # a comment
I: 0011 0002 0007 01b1
P: 09 00 00 00 00 00 00 00
B: 00 0b 00 00 00 00 00 00 00
A: 00 0 100 0 0 0
A: 2f 0 1 0 0 0
A: 35 100 1100 8 0 12
A: 36 0 500 8 0 10
A: 39 0 65535 0 0 0
E: 0.000000 0003 0039 7
E: 0.000001 0003 0035 600
E: 0.010000 0000 0000 0000
)";

constexpr const char* evtestFile = R"(Input driver version is 1.0.1
Input device ID: bus 0x11 vendor 0x2 product 0x7 version 0x1b1
Input device name: "Pad"
Supported events:
  Event type 1 (EV_KEY)
    Event code 272 (BTN_LEFT)
  Event type 3 (EV_ABS)
    Event code 47 (ABS_MT_SLOT)
      Value      0
      Min        0
      Max        1
    Event code 53 (ABS_MT_POSITION_X)
      Value      0
      Min      100
      Max     1100
      Fuzz       8
      Resolution      12
    Event code 54 (ABS_MT_POSITION_Y)
      Value      0
      Min        0
      Max      500
      Resolution      10
    Event code 57 (ABS_MT_TRACKING_ID)
      Value      0
      Min        0
      Max    65535
Properties:
  Property type 0 (INPUT_PROP_POINTER)
  Property type 3 (INPUT_PROP_SEMI_MT)
Testing ... (interrupt to exit)
Event: time 0.000000, type 3 (EV_ABS), code 57 (ABS_MT_TRACKING_ID), value 7
Event: time 0.000001, type 3 (EV_ABS), code 53 (ABS_MT_POSITION_X), value 600
Event: time 0.000001, type 4 (EV_MSC), code 4 (MSC_SCAN), value 90001
Event: time 0.010000, -------------- SYN_REPORT ------------
Event: time 0.020000, >>>>>>>>>>>>>> SYN_DROPPED <<<<<<<<<<<<
)";

constexpr const char* libinputFile = R"(# libinput record
version: 1
ndevices: 2
libinput:
  version: "1.25.0"
devices:
- node: /dev/input/event5
  evdev:
    # Name: Pad
    name: "Pad"
    id: [17, 2, 7, 433]
    codes:
      0: [0, 1, 2, 3] # EV_SYN
      3: [0, 1, 47, 53, 54, 57] # EV_ABS
    absinfo:
      47: [0, 1, 0, 0, 0]
      53: [100, 1100, 8, 0, 12]
      54: [0, 500, 8, 0, 10]
      57: [0, 65535, 0, 0, 0]
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
  evdev:
    name: "Keyboard"
  events:
  - evdev:
    - [  1,      0,   1,  30,     1]
)";

RecordedDevice pad(bool semi, std::vector<MultitouchAxis> axes) {
    return {{"Pad", AxisRange{100, 1100, 12}, AxisRange{0, 500, 10}, 2, semi}, std::move(axes)};
}
const std::vector<MultitouchAxis> positionAndId{{ABS_MT_POSITION_X, {100, 1100, 12}},
                                                {ABS_MT_POSITION_Y, {0, 500, 10}},
                                                {ABS_MT_TRACKING_ID, {0, 65535, 0}}};

struct Read {
    std::optional<RecordedDevice> device;
    std::vector<EvdevEvent> events;
    std::string error;  // "LINE: problem" of the first bad line
};

Read readAll(RecordingFormat format, const std::string& text) {
    std::istringstream input(text);
    Read read;
    try {
        const auto reader = openEvdevRecording(format, input);
        read.device = reader->device();
        while (const auto event = reader->next()) read.events.push_back(*event);
    } catch (const RecordingError& error) {
        read.error = std::to_string(error.line()) + ": " + error.problem();
    }
    return read;
}

RecordingFormat detect(const std::string& text) {
    std::istringstream input(text);
    std::string line;
    while (std::getline(input, line)) {
        if (const auto format = formatShownBy(line)) return *format;
    }
    return RecordingFormat::jsonLines;
}

TEST(EvdevRecording, ReadsEachFormat) {
    const std::vector<EvdevEvent> touch{{0.0, EV_ABS, ABS_MT_TRACKING_ID, 7},
                                        {0.000001, EV_ABS, ABS_MT_POSITION_X, 600},
                                        {0.01, EV_SYN, SYN_REPORT, 0}};
    std::vector<EvdevEvent> evtestEvents = touch;
    evtestEvents.insert(evtestEvents.begin() + 2, {0.000001, 4, 4, 0});
    evtestEvents.push_back({0.02, EV_SYN, SYN_DROPPED, 0});
    struct Row {
        const char* name;
        std::string text;
        RecordingFormat format;
        Read expected;
    };
    const std::vector<Row> rows = {
        {"evemu", evemuFile, RecordingFormat::evemu, {pad(true, positionAndId), touch, ""}},
        {"evemu without a header",
         "\n# from a bug report\nE: 0.5 0001 0110 1\n",
         RecordingFormat::evemu,
         {std::nullopt, {{0.5, EV_KEY, BTN_LEFT, 1}}, ""}},
        {"evtest with its header",
         evtestFile,
         RecordingFormat::evtest,
         {pad(true, positionAndId), evtestEvents, ""}},
        {"evtest pasted without its header",
         "Event: time 3.25, type 1 (EV_KEY), code 272 (BTN_LEFT), value 1\n",
         RecordingFormat::evtest,
         {std::nullopt, {{3.25, EV_KEY, BTN_LEFT, 1}}, ""}},
        {"libinput record, first device only",
         libinputFile,
         RecordingFormat::libinputRecord,
         {pad(true, positionAndId), touch, ""}},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(detect(row.text), row.format) << row.name;
        const Read read = readAll(row.format, row.text);
        EXPECT_EQ(read.error, row.expected.error) << row.name;
        EXPECT_EQ(read.device, row.expected.device) << row.name;
        EXPECT_EQ(read.events, row.expected.events) << row.name;
    }
    EXPECT_EQ(detect("# a replay\n{\"t\": 0, \"touches\": []}\n"), RecordingFormat::jsonLines);
}

TEST(EvdevRecording, BadLinesAreNamed) {
    struct Row {
        const char* name;
        RecordingFormat format;
        std::string text;
        std::string error;
    };
    const std::vector<Row> rows = {
        {"evemu: unknown line", RecordingFormat::evemu, "N: Pad\nhello\n",
         "2: \"hello\" is not an evemu line"},
        {"evemu: short event", RecordingFormat::evemu, "E: 0.1 0003 0035\n",
         "1: an event line needs a time, a type, a code and a value"},
        {"evemu: bad hex code", RecordingFormat::evemu, "E: 0.1 0003 00zz 5\n",
         "1: event code \"00zz\" is not a hex number"},
        {"evemu: type out of range", RecordingFormat::evemu, "E: 0.1 0020 0000 0\n",
         "1: event type 32 is out of range"},
        {"evemu: value out of range", RecordingFormat::evemu, "E: 0.1 0003 0035 4294967296\n",
         "1: value 4294967296 is out of range"},
        {"evemu: bad time", RecordingFormat::evemu, "E: -1 0003 0035 0\n",
         "1: time \"-1\" is not a time stamp"},
        {"evemu: axis line too short", RecordingFormat::evemu, "A: 35 0 100\n",
         "1: an axis line needs a code, minimum, maximum, fuzz, flat and resolution"},
        {"evtest: event without a value", RecordingFormat::evtest,
         "\n\nEvent: time 1.0, type 3 (EV_ABS), code 53 (ABS_MT_POSITION_X)\n", "3: the event has no value"},
        {"evtest: unknown banner", RecordingFormat::evtest, "Event: time 1.0, ---- SYN_WHAT ----\n",
         "1: \"---- SYN_WHAT ----\" is no event evtest writes"},
        {"libinput: short event", RecordingFormat::libinputRecord, "events:\n- evdev:\n  - [0, 0, 3, 53]\n",
         "3: an event needs [sec, usec, type, code, value]"},
        {"libinput: unclosed list", RecordingFormat::libinputRecord, "absinfo:\n  53: [0, 100\n",
         "2: a list lacks its closing ]"},
    };
    for (const Row& row : rows) EXPECT_EQ(readAll(row.format, row.text).error, row.error) << row.name;
}

TEST(EvdevRecording, EvemuDescriptionFile) {
    std::istringstream description("N: Old Pad\nA: 35 0 1000 0 0\nA: 36 0 600 0 0\nA: 30 0 15 0 0\n");
    const RecordedDevice device = readEvemuDescription(description);
    EXPECT_EQ(device.description,
              (TouchpadDescription{"Old Pad", AxisRange{0, 1000, 0}, AxisRange{0, 600, 0}, 0, false}));
    EXPECT_EQ(device.multitouchAxes.front(), (MultitouchAxis{ABS_MT_TOUCH_MAJOR, {0, 15, 0}}));

    std::istringstream events("E: 0.1 0003 0035 5\n");
    EXPECT_THROW(readEvemuDescription(events), RecordingError);
}

}  // namespace
}  // namespace ostrelle
