// Replays of raw touchpad events (evemu, evtest, libinput record) through the frame assembler,
// as the command line reads them.
#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "cli/cli_runner.h"

namespace ostrelle {
namespace {

using testing::runCLI;
using Lines = std::vector<std::string>;

struct Event {
    double time;
    int type;
    int code;
    int value;
};

// Three fingers on a two-slot pad: two slots and BTN_TOOL_TRIPLETAP, lifted 0.1 s later;
// with `click`, the pad is pressed meanwhile.
std::vector<Event> threeFingers(bool click) {
    std::vector<Event> events{
        {1.0, 3, 0x2f, 0},  {1.0, 3, 0x39, 10}, {1.0, 3, 0x35, 400}, {1.0, 3, 0x36, 300},
        {1.0, 3, 0x2f, 1},  {1.0, 3, 0x39, 11}, {1.0, 3, 0x35, 600}, {1.0, 3, 0x36, 310},
        {1.0, 1, 0x14e, 1}, {1.0, 0, 0, 0},     {1.1, 3, 0x2f, 0},   {1.1, 3, 0x39, -1},
        {1.1, 3, 0x2f, 1},  {1.1, 3, 0x39, -1}, {1.1, 1, 0x14e, 0},  {1.1, 0, 0, 0}};
    if (click) events.insert(events.begin() + 9, {1.0, 1, 0x110, 1});
    return events;
}

const std::string evemuHeader =
    "# EVEMU 1.3\nN: Test Pad\nI: 0011 0002 0007 01b1\nP: 05 00 00 00 00 00 00 00\n"
    "A: 2f 0 1 0 0 0\nA: 35 0 1000 0 0 10\nA: 36 0 600 0 0 10\nA: 39 0 65535 0 0 0\n";

std::string evemuEvents(const std::vector<Event>& events) {
    std::string text;
    for (const Event& e : events)
        text += fmt::format("E: {:.6f} {:04x} {:04x} {}\n", e.time, e.type, e.code, e.value);
    return text;
}

std::string evtestLog(const std::vector<Event>& events) {
    std::string text =
        "Input driver version is 1.0.1\nInput device name: \"Test Pad\"\nSupported events:\n"
        "  Event type 3 (EV_ABS)\n    Event code 47 (ABS_MT_SLOT)\n      Min 0\n      Max 1\n"
        "    Event code 53 (ABS_MT_POSITION_X)\n      Min 0\n      Max 1000\n"
        "    Event code 54 (ABS_MT_POSITION_Y)\n      Min 0\n      Max 600\nTesting ... (interrupt to "
        "exit)\n";
    for (const Event& e : events) {
        text += e.type == 0
                    ? fmt::format("Event: time {:.6f}, -------------- SYN_REPORT ------------\n", e.time)
                    : fmt::format("Event: time {:.6f}, type {} (X), code {} (Y), value {}\n", e.time, e.type,
                                  e.code, e.value);
    }
    return text;
}

std::string libinputRecord(const std::vector<Event>& events) {
    std::string text =
        "# libinput record\nversion: 1\nndevices: 1\ndevices:\n- node: /dev/input/event3\n  evdev:\n"
        "    name: \"Test Pad\"\n    absinfo:\n      47: [0, 1, 0, 0, 0]\n      53: [0, 1000, 0, 0, 10]\n"
        "      54: [0, 600, 0, 0, 10]\n    properties: [0, 2]\n  events:\n";
    bool inFrame = false;
    for (const Event& e : events) {
        if (!inFrame) text += "  - evdev:\n";
        const int usec = int(e.time * 1e6 + 0.5) % 1000000;
        text += fmt::format("    - [{}, {}, {}, {}, {}]\n", int(e.time), usec, e.type, e.code, e.value);
        inFrame = e.type != 0;
    }
    return text;
}

struct EvdevReplay : ::testing::Test {
    std::string write(const std::string& name, const std::string& contents) const {
        testing::writeText(folder.path() / name, contents);
        return (folder.path() / name).string();
    }
    testing::TemporaryFolder folder;
};

TEST_F(EvdevReplay, EachFormatGoesThroughTheAssembler) {
    const std::string desc = write("pad.desc", evemuHeader);
    const std::string keyboard = write("keyboard.desc", "N: Keyboard\nA: 00 0 100 0 0 0\n");
    const std::string bindings = write("bindings.json", R"([{"id": "0E4A5C3B-7D2F-4B8E-9A61-3C5D7E9F1A21",
        "gesture": "3.tap", "createdAt": 1, "action": {"appID": "browsers", "optionID": "newtab"}}])");
    const std::string tap = R"({"t": 1.1, "gesture": "3.tap"})";
    struct Row {
        const char* name;
        std::string file;
        Lines arguments;  // after "replay FILE"
        Lines out;
        std::string err;
    };
    const std::vector<Row> rows = {
        {"evemu: a stand-in makes the third finger",
         evemuHeader + evemuEvents(threeFingers(false)),
         {},
         {tap},
         ""},
        {"evemu: the click comes after its frame",
         evemuHeader + evemuEvents(threeFingers(true)),
         {},
         {R"({"t": 1.0, "gesture": "3.click"})"},
         ""},
        {"evtest log", evtestLog(threeFingers(false)), {}, {tap}, ""},
        {"libinput record", libinputRecord(threeFingers(false)), {}, {tap}, ""},
        {"header-less evemu with --device", evemuEvents(threeFingers(false)), {"--device", desc}, {tap}, ""},
        {"through the engine",
         evemuHeader + evemuEvents(threeFingers(false)),
         {"--bindings", bindings},
         {tap, R"({"t": 1.1, "run": "browsers/newtab"})",
          R"({"t": 1.1, "event": {"down": true, "flags": 1048576, "key": 17}})",
          R"({"t": 1.1, "event": {"down": false, "flags": 1048576, "key": 17}})"},
         ""},
        {"header-less evemu alone",
         "# from a bug\n" + evemuEvents(threeFingers(false)),
         {},
         {},
         "FILE:2: the recording does not describe its device: give its evemu description with --device DESC"},
        {"--device of a pad without multitouch axes",
         evemuEvents(threeFingers(false)),
         {"--device", keyboard},
         {},
         "FILE: \"Keyboard\" has no multitouch position axes (ABS_MT_POSITION_X/Y), so it cannot be read as "
         "a touchpad"},
        {"a bad line after frames were played",
         evemuHeader + evemuEvents(threeFingers(false)) + "E: 2.0 0003\n",
         {},
         {tap},
         "FILE:25: an event line needs a time, a type, a code and a value"},
        {"time going back",
         evemuHeader + evemuEvents(threeFingers(false)) + "E: 0.5 0001 0110 1\nE: 0.5 0000 0000 0\n",
         {},
         {tap},
         "FILE:26: time 0.5 is before the previous report's 1.1"},
    };
    for (const Row& row : rows) {
        const std::string file = write("recording", row.file);
        Lines arguments{"replay", file};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        const testing::ScratchHome home;
        const testing::CLIResult result = runCLI(arguments, "", home);
        EXPECT_EQ(result.outLines(), row.out) << row.name;
        const std::string err = row.err.empty() ? "" : "error: " + file + row.err.substr(4) + "\n";
        EXPECT_EQ(result.err, err) << row.name;
        EXPECT_EQ(result.status, row.err.empty() ? 0 : 2) << row.name;
    }
}

TEST_F(EvdevReplay, StandardInputIsDetectedToo) {
    const testing::CLIResult result = runCLI({"replay", "-"}, evtestLog(threeFingers(false)));
    EXPECT_EQ(result.outLines(), Lines{R"({"t": 1.1, "gesture": "3.tap"})"});
    EXPECT_EQ(result.status, 0);
}

}  // namespace
}  // namespace ostrelle
