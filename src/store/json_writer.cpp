#include "store/json_writer.h"

#include <array>
#include <charconv>
#include <cmath>
#include <fmt/format.h>

namespace ostrelle {
namespace {

constexpr std::size_t indentWidth = 2;

void appendNumberText(std::string& out, auto value) {
    std::array<char, 32> buffer{};  // enough for any double's shortest form and any 64-bit integer
    const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value);
    out.append(buffer.data(), result.ptr);
}

}  // namespace

void BindingsStyleWriter::beginValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (containerHasMembers_.empty()) return;  // the top-level value
    if (containerHasMembers_.back()) out_ += ",\n";
    containerHasMembers_.back() = true;
    out_.append(containerHasMembers_.size() * indentWidth, ' ');
}

void BindingsStyleWriter::beginContainer(char opening) {
    beginValue();
    out_ += opening;
    out_ += '\n';
    containerHasMembers_.push_back(false);
}

// An empty container still gets its blank line: "[\n\n]".
void BindingsStyleWriter::endContainer(char closing) {
    containerHasMembers_.pop_back();
    out_ += '\n';
    out_.append(containerHasMembers_.size() * indentWidth, ' ');
    out_ += closing;
}

void BindingsStyleWriter::beginObject() { beginContainer('{'); }
void BindingsStyleWriter::endObject() { endContainer('}'); }
void BindingsStyleWriter::beginArray() { beginContainer('['); }
void BindingsStyleWriter::endArray() { endContainer(']'); }

void BindingsStyleWriter::key(std::string_view name) {
    string(name);
    out_ += " : ";
    afterKey_ = true;
}

void BindingsStyleWriter::null() {
    beginValue();
    out_ += "null";
}

void BindingsStyleWriter::boolean(bool value) {
    beginValue();
    out_ += value ? "true" : "false";
}

void BindingsStyleWriter::integer(std::int64_t value) {
    beginValue();
    appendNumberText(out_, value);
}

void BindingsStyleWriter::unsignedInteger(std::uint64_t value) {
    beginValue();
    appendNumberText(out_, value);
}

void BindingsStyleWriter::number(double value) {
    if (!std::isfinite(value)) {
        // Not representable in JSON; the store never produces one, but a writer must not emit garbage.
        null();
        return;
    }
    beginValue();
    // Negative zero reads back equal to zero; a plain "0" is what a reader expects to see.
    appendNumberText(out_, value == 0 ? 0.0 : value);
}

void BindingsStyleWriter::string(std::string_view text) {
    beginValue();
    out_ += '"';
    for (const char ch : text) {
        const auto c = static_cast<unsigned char>(ch);
        switch (c) {
            case '"': out_ += "\\\""; break;
            case '\\': out_ += "\\\\"; break;
            case '/': out_ += "\\/"; break;
            case '\b': out_ += "\\b"; break;
            case '\f': out_ += "\\f"; break;
            case '\n': out_ += "\\n"; break;
            case '\r': out_ += "\\r"; break;
            case '\t': out_ += "\\t"; break;
            default:
                if (c < 0x20) {
                    out_ += fmt::format("\\u{:04x}", c);
                } else {
                    out_ += ch;  // UTF-8 passes through unescaped
                }
        }
    }
    out_ += '"';
}

namespace {

void write(BindingsStyleWriter& writer, const nlohmann::json& value) {
    using Type = nlohmann::json::value_t;
    switch (value.type()) {
        case Type::null: writer.null(); break;
        case Type::boolean: writer.boolean(value.get<bool>()); break;
        case Type::number_integer: writer.integer(value.get<std::int64_t>()); break;
        case Type::number_unsigned: writer.unsignedInteger(value.get<std::uint64_t>()); break;
        case Type::number_float: writer.number(value.get<double>()); break;
        case Type::string: writer.string(value.get_ref<const std::string&>()); break;
        case Type::array:
            writer.beginArray();
            for (const auto& element : value) write(writer, element);
            writer.endArray();
            break;
        case Type::object:
            writer.beginObject();
            // nlohmann keeps object members sorted by key.
            for (const auto& [key, member] : value.items()) {
                writer.key(key);
                write(writer, member);
            }
            writer.endObject();
            break;
        case Type::binary:
        case Type::discarded: writer.null(); break;
    }
}

}  // namespace

std::string writeBindingsStyleJSON(const nlohmann::json& value) {
    BindingsStyleWriter writer;
    write(writer, value);
    return writer.take();
}

}  // namespace ostrelle
