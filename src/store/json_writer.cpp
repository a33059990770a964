#include "store/json_writer.h"

#include <fmt/compile.h>
#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace ostrelle {
namespace {

constexpr std::size_t indentWidth = 2;

// Room for any 64-bit integer with its sign, and for any double's shortest form
// ("-2.2250738585072014e-308").
constexpr std::size_t longestNumber = 32;

std::string_view escapeFor(unsigned char c) {
    switch (c) {
        case '"':
            return "\\\"";
        case '\\':
            return "\\\\";
        case '/':
            return "\\/";
        case '\b':
            return "\\b";
        case '\f':
            return "\\f";
        case '\n':
            return "\\n";
        case '\r':
            return "\\r";
        case '\t':
            return "\\t";
        default:
            return {};
    }
}

}  // namespace

void BindingsStyleWriter::reserve(std::size_t bytes) {
    if (bytes > out_.size()) out_.resize(bytes);
}

std::string BindingsStyleWriter::take() {
    out_.resize(used_);
    used_ = 0;
    return std::move(out_);
}

char* BindingsStyleWriter::room(std::size_t bytes) {
    if (out_.size() - used_ < bytes) out_.resize(std::max(out_.size() * 2, used_ + bytes));
    char* start = out_.data() + used_;
    used_ += bytes;
    return start;
}

void BindingsStyleWriter::newLineAndIndent(std::size_t depth) {
    char* start = room(1 + depth * indentWidth);
    *start = '\n';
    std::fill_n(start + 1, depth * indentWidth, ' ');
}

void BindingsStyleWriter::beginValue() {
    if (afterKey_) {
        afterKey_ = false;
        return;
    }
    if (containerHasMembers_.empty()) return;  // the top-level value
    if (containerHasMembers_.back()) put(',');
    containerHasMembers_.back() = true;
    newLineAndIndent(containerHasMembers_.size());
}

void BindingsStyleWriter::beginContainer(char opening) {
    beginValue();
    put(opening);
    containerHasMembers_.push_back(false);
}

// An empty container still gets its blank line: "[\n\n]".
void BindingsStyleWriter::endContainer(char closing) {
    if (!containerHasMembers_.back()) put('\n');
    containerHasMembers_.pop_back();
    newLineAndIndent(containerHasMembers_.size());
    put(closing);
}

void BindingsStyleWriter::beginObject() {
    beginContainer('{');
}
void BindingsStyleWriter::endObject() {
    endContainer('}');
}
void BindingsStyleWriter::beginArray() {
    beginContainer('[');
}
void BindingsStyleWriter::endArray() {
    endContainer(']');
}

void BindingsStyleWriter::key(std::string_view name) {
    string(name);
    put(" : ");
    afterKey_ = true;
}

void BindingsStyleWriter::null() {
    beginValue();
    put("null");
}

void BindingsStyleWriter::boolean(bool value) {
    beginValue();
    put(value ? "true" : "false");
}

char* BindingsStyleWriter::numberRoom() {
    return room(longestNumber);
}

void BindingsStyleWriter::numberWritten(const char* start, const char* end) {
    used_ -= longestNumber - static_cast<std::size_t>(end - start);
}

void BindingsStyleWriter::integer(std::int64_t value) {
    beginValue();
    char* start = numberRoom();
    numberWritten(start, std::to_chars(start, start + longestNumber, value).ptr);
}

void BindingsStyleWriter::unsignedInteger(std::uint64_t value) {
    beginValue();
    char* start = numberRoom();
    numberWritten(start, std::to_chars(start, start + longestNumber, value).ptr);
}

// The shortest text that reads back to the same double, in plain notation for everyday
// magnitudes ("100000", "0.0001") as other JSON encoders write them. fmt's shortest-form
// conversion is also faster than std::to_chars, and a file holds tens of thousands of them.
void BindingsStyleWriter::number(double value) {
    if (!std::isfinite(value)) {
        // Not representable in JSON; the store never produces one, but a writer must not emit garbage.
        null();
        return;
    }
    beginValue();
    // Negative zero reads back equal to zero; a plain "0" is what a reader expects to see.
    char* start = numberRoom();
    numberWritten(start, fmt::format_to(start, FMT_COMPILE("{}"), value == 0 ? 0.0 : value));
}

void BindingsStyleWriter::string(std::string_view text) {
    beginValue();
    put('"');
    std::size_t plainFrom = 0;  // runs of characters that need no escape are copied whole
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const std::string_view escape = escapeFor(c);
        if (escape.empty() && c >= 0x20) continue;  // UTF-8 passes through unescaped
        put(text.substr(plainFrom, i - plainFrom));
        plainFrom = i + 1;
        if (!escape.empty()) {
            put(escape);
        } else {
            put(fmt::format("\\u{:04x}", c));
        }
    }
    put(text.substr(plainFrom));
    put('"');
}

namespace {

void write(BindingsStyleWriter& writer, const nlohmann::json& value) {
    using Type = nlohmann::json::value_t;
    switch (value.type()) {
        case Type::null:
            writer.null();
            break;
        case Type::boolean:
            writer.boolean(value.get<bool>());
            break;
        case Type::number_integer:
            writer.integer(value.get<std::int64_t>());
            break;
        case Type::number_unsigned:
            writer.unsignedInteger(value.get<std::uint64_t>());
            break;
        case Type::number_float:
            writer.number(value.get<double>());
            break;
        case Type::string:
            writer.string(value.get_ref<const std::string&>());
            break;
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
        case Type::discarded:
            writer.null();
            break;
    }
}

}  // namespace

std::string writeBindingsStyleJSON(const nlohmann::json& value) {
    BindingsStyleWriter writer;
    write(writer, value);
    return writer.take();
}

}  // namespace ostrelle
