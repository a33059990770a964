#include "support/json_line.h"

namespace ostrelle {
namespace {

void append(std::string& out, const nlohmann::ordered_json& value) {
    // Invalid UTF-8 cannot come from parsed JSON, but a stray byte from elsewhere must not
    // throw halfway through a line: it is replaced instead.
    constexpr auto onBadUTF8 = nlohmann::ordered_json::error_handler_t::replace;
    if (value.is_object()) {
        out += '{';
        bool first = true;
        for (const auto& [key, member] : value.items()) {
            if (!first) out += ", ";
            first = false;
            out += nlohmann::ordered_json(key).dump(-1, ' ', false, onBadUTF8);
            out += ": ";
            append(out, member);
        }
        out += '}';
    } else if (value.is_array()) {
        out += '[';
        bool first = true;
        for (const auto& item : value) {
            if (!first) out += ", ";
            first = false;
            append(out, item);
        }
        out += ']';
    } else {
        out += value.dump(-1, ' ', false, onBadUTF8);
    }
}

}  // namespace

std::string jsonLine(const nlohmann::ordered_json& value) {
    std::string out;
    append(out, value);
    return out;
}

}  // namespace ostrelle
