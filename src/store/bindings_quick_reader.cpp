// GCC's optimizer sees a null path through the parser's inlined tape buffer that cannot be
// taken after a successful parse, and would fail the build on it.
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wnull-dereference"
#endif

#include "store/bindings_quick_reader.h"

#include <cmath>
#include <cstdint>
#include <limits>
#include <nlohmann/json.hpp>
#include <optional>
#include <simdjson.h>
#include <string>

#include "gestures/gesture_json.h"
#include "store/binding_json.h"

namespace ostrelle {
namespace {

using nlohmann::json;
namespace dom = simdjson::dom;

// A value as the full reader's tree holds it. nlohmann reads a non-negative integer as unsigned,
// so that is what it becomes here too. False for a repeated member: the full reader's tree keeps
// the last one, and that case is left to it.
bool toTree(dom::element element, json& out) {
    switch (element.type()) {
        case dom::element_type::ARRAY: {
            out = json::array();
            dom::array items;
            if (element.get(items) != simdjson::SUCCESS) return false;
            for (const dom::element item : items) {
                if (!toTree(item, out.emplace_back())) return false;
            }
            return true;
        }
        case dom::element_type::OBJECT: {
            out = json::object();
            dom::object members;
            if (element.get(members) != simdjson::SUCCESS) return false;
            for (const dom::key_value_pair member : members) {
                auto [slot, added] = out.get_ref<json::object_t&>().emplace(member.key, nullptr);
                if (!added || !toTree(member.value, slot->second)) return false;
            }
            return true;
        }
        case dom::element_type::INT64: {
            const std::int64_t value = element.get_int64().value_unsafe();
            out = value >= 0 ? json(static_cast<std::uint64_t>(value)) : json(value);
            return true;
        }
        case dom::element_type::UINT64: out = element.get_uint64().value_unsafe(); return true;
        case dom::element_type::DOUBLE: out = element.get_double().value_unsafe(); return true;
        case dom::element_type::STRING: out = std::string(element.get_string().value_unsafe()); return true;
        case dom::element_type::BOOL: out = element.get_bool().value_unsafe(); return true;
        case dom::element_type::NULL_VALUE: out = nullptr; return true;
    }
    return false;
}

bool readCoordinate(dom::element element, double& out) {
    switch (element.type()) {
        case dom::element_type::INT64: out = static_cast<double>(element.get_int64().value_unsafe()); return true;
        case dom::element_type::UINT64: out = static_cast<double>(element.get_uint64().value_unsafe()); return true;
        case dom::element_type::DOUBLE: out = element.get_double().value_unsafe(); return std::isfinite(out);
        case dom::element_type::ARRAY:
        case dom::element_type::OBJECT:
        case dom::element_type::STRING:
        case dom::element_type::BOOL:
        case dom::element_type::NULL_VALUE: return false;
    }
    return false;
}

bool readPoints(dom::element element, std::vector<Point>& out) {
    dom::array points;
    if (element.get(points) != simdjson::SUCCESS) return false;
    out.reserve(points.size());
    for (const dom::element item : points) {
        dom::array pair;
        if (item.get(pair) != simdjson::SUCCESS || pair.size() != 2) return false;
        Point point;
        if (!readCoordinate(pair.at(0).value_unsafe(), point.x) || !readCoordinate(pair.at(1).value_unsafe(), point.y)) {
            return false;
        }
        out.push_back(point);
    }
    return true;
}

// "3.0" is no finger count to the full reader either, so only an integer will do.
bool readFingerCount(dom::element element, int& out) {
    std::int64_t count = 0;
    if (element.type() != dom::element_type::INT64 || element.get(count) != simdjson::SUCCESS) return false;
    if (count < std::numeric_limits<int>::min() || count > std::numeric_limits<int>::max()) return false;
    out = static_cast<int>(count);
    return CustomShape::isHandFingerCount(out);
}

// A shape the full reader would keep, and nothing else: all four members once, none other.
bool readShape(dom::element element, CustomShape& shape) {
    dom::object members;
    if (element.get(members) != simdjson::SUCCESS) return false;
    bool name = false, fingers = false, path = false, strokes = false;
    for (const dom::key_value_pair member : members) {
        if (member.key == shape_keys::name && !name) {
            std::string_view text;
            if (member.value.get(text) != simdjson::SUCCESS) return false;
            shape.name = text;
            name = true;
        } else if (member.key == shape_keys::fingers && !fingers) {
            if (!readFingerCount(member.value, shape.fingers)) return false;
            fingers = true;
        } else if (member.key == shape_keys::path && !path) {
            if (!readPoints(member.value, shape.path)) return false;
            path = true;
        } else if (member.key == shape_keys::strokes && !strokes) {
            dom::array list;
            if (member.value.get(list) != simdjson::SUCCESS) return false;
            shape.strokes.reserve(list.size());
            for (const dom::element stroke : list) {
                if (!readPoints(stroke, shape.strokes.emplace_back())) return false;
            }
            strokes = true;
        } else {
            return false;
        }
    }
    return name && fingers && path && strokes;
}

// The binding's gesture object as a tree without its shape, which goes to `shape`.
bool readGestureObject(dom::object gesture, json& out, std::optional<CustomShape>& shape) {
    out = json::object();
    for (const dom::key_value_pair member : gesture) {
        if (member.key == gesture_keys::custom) {
            if (shape || !readShape(member.value, shape.emplace())) return false;
            continue;
        }
        auto [slot, added] = out.get_ref<json::object_t&>().emplace(member.key, nullptr);
        if (!added || !toTree(member.value, slot->second)) return false;
    }
    // The full reader keeps a shape only beside a string "id"; a legacy gesture drops it.
    const auto id = out.find(gesture_keys::id);
    return !shape || (id != out.end() && id->is_string());
}

bool readBinding(dom::element element, std::vector<GestureBinding>& bindings) {
    dom::object members;
    if (element.get(members) != simdjson::SUCCESS) return false;
    json tree = json::object();
    std::optional<CustomShape> shape;
    for (const dom::key_value_pair member : members) {
        auto [slot, added] = tree.get_ref<json::object_t&>().emplace(member.key, nullptr);
        if (!added) return false;
        dom::object gesture;
        const bool read = member.key == binding_keys::gesture && member.value.get(gesture) == simdjson::SUCCESS
                              ? readGestureObject(gesture, slot->second, shape)
                              : toTree(member.value, slot->second);
        if (!read) return false;
    }
    try {
        GestureBinding binding = decodeBinding(tree);
        if (shape) binding.gesture.custom = std::move(*shape);
        bindings.push_back(std::move(binding));
    } catch (const std::exception&) {
        return false;  // the full reader names the problem
    }
    return true;
}

}  // namespace

std::optional<std::vector<GestureBinding>> readPlainBindingsFile(std::string_view bytes) {
    dom::parser parser;
    dom::array file;
    if (parser.parse(bytes.data(), bytes.size()).get(file) != simdjson::SUCCESS) return std::nullopt;
    std::vector<GestureBinding> bindings;
    bindings.reserve(file.size());
    for (const dom::element element : file) {
        if (!readBinding(element, bindings)) return std::nullopt;
    }
    return bindings;
}

}  // namespace ostrelle
