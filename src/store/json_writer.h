#pragma once

#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <vector>

namespace ostrelle {

// Prints JSON the way the bindings file is written: one member per line, two-space indentation,
// " : " between key and value, keys sorted, "/" escaped as "\/", and numbers as the shortest
// text that reads back to the same double (integral doubles without a fraction).
//
// Values are written as they are given, so a model can be printed without first building a
// tree of it. The caller gives object members in sorted key order.
class BindingsStyleWriter {
  public:
    void beginObject();
    void endObject();
    void beginArray();
    void endArray();
    void key(std::string_view name);  // the next value is this member's

    void null();
    void boolean(bool value);
    void integer(std::int64_t value);
    void unsignedInteger(std::uint64_t value);
    void number(double value);
    void string(std::string_view text);

    // Room for a text of about this size, so that a large file is printed without regrowing.
    void reserve(std::size_t bytes);
    std::string take();

  private:
    void beginValue();
    void beginContainer(char opening);
    void endContainer(char closing);
    void newLineAndIndent(std::size_t depth);

    // Writing goes through room(): the buffer is kept longer than the text, and `used_` marks
    // the end, so that each value costs one bounds check instead of one per character.
    char* room(std::size_t bytes);
    void put(std::string_view text) { text.copy(room(text.size()), text.size()); }
    void put(char c) { *room(1) = c; }
    // A number is printed into room for the longest one, and the rest given back.
    char* numberRoom();
    void numberWritten(const char* start, const char* end);

    std::string out_;
    std::size_t used_ = 0;
    std::vector<bool> containerHasMembers_;  // one per open container, innermost last
    bool afterKey_ = false;
};

std::string writeBindingsStyleJSON(const nlohmann::json& value);

}  // namespace ostrelle
