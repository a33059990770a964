#include "store/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace ostrelle {
namespace {

constexpr std::size_t indentWidth = 2;

void writeString(std::string& out, const std::string& text) {
    out += '"';
    for (const char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        switch (c) {
            case '"': out += "\\\""; break;
            case '\\': out += "\\\\"; break;
            case '/': out += "\\/"; break;
            case '\b': out += "\\b"; break;
            case '\f': out += "\\f"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\t': out += "\\t"; break;
            default:
                if (c < 0x20) {
                    out += fmt::format("\\u{:04x}", c);
                } else {
                    out += ch;  // UTF-8 passes through unescaped
                }
        }
    }
    out += '"';
}

void writeDouble(std::string& out, double value) {
    if (!std::isfinite(value)) {
        // Not representable in JSON; the store never produces one, but a writer must not emit garbage.
        out += "null";
        return;
    }
    std::array<char, 32> buffer{};
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    std::string text(buffer.data(), result.ptr);
    if (text == "-0") text = "0";
    out += text;
}

void indent(std::string& out, std::size_t depth) { out.append(depth * indentWidth, ' '); }

void write(std::string& out, const nlohmann::json& value, std::size_t depth) {
    using Type = nlohmann::json::value_t;
    switch (value.type()) {
        case Type::null: out += "null"; break;
        case Type::boolean: out += value.get<bool>() ? "true" : "false"; break;
        case Type::number_integer: out += std::to_string(value.get<std::int64_t>()); break;
        case Type::number_unsigned: out += std::to_string(value.get<std::uint64_t>()); break;
        case Type::number_float: writeDouble(out, value.get<double>()); break;
        case Type::string: writeString(out, value.get_ref<const std::string&>()); break;
        case Type::array: {
            out += "[\n";
            bool first = true;
            for (const auto& element : value) {
                if (!first) out += ",\n";
                first = false;
                indent(out, depth + 1);
                write(out, element, depth + 1);
            }
            out += '\n';
            indent(out, depth);
            out += ']';
            break;
        }
        case Type::object: {
            out += "{\n";
            bool first = true;
            // nlohmann keeps object members sorted by key.
            for (const auto& [key, member] : value.items()) {
                if (!first) out += ",\n";
                first = false;
                indent(out, depth + 1);
                writeString(out, key);
                out += " : ";
                write(out, member, depth + 1);
            }
            out += '\n';
            indent(out, depth);
            out += '}';
            break;
        }
        case Type::binary:
        case Type::discarded: out += "null"; break;
    }
}

}  // namespace

std::string writeBindingsStyleJSON(const nlohmann::json& value) {
    std::string out;
    write(out, value, 0);
    return out;
}

}  // namespace ostrelle
