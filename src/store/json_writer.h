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

    std::string take() { return std::move(out_); }

private:
    void beginValue();
    void beginContainer(char opening);
    void endContainer(char closing);

    std::string out_;
    std::vector<bool> containerHasMembers_;  // one per open container, innermost last
    bool afterKey_ = false;
};

std::string writeBindingsStyleJSON(const nlohmann::json& value);

}  // namespace ostrelle
