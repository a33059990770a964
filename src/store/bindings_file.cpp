#include "store/bindings_file.h"

#include <nlohmann/json.hpp>
#include <string>

#include "actions/action_ref_json.h"
#include "actions/key_shortcut_json.h"
#include "gestures/gesture_json.h"
#include "store/binding_json.h"
#include "store/json_writer.h"

namespace ostrelle {
namespace {

// The file is printed straight from the model, members in sorted key order: a start rewrites
// the whole file, and building a JSON tree of thousands of shape points first would double
// the time the user waits for.

void writePoints(BindingsStyleWriter& out, const std::vector<Point>& points) {
    out.beginArray();
    for (const Point& point : points) {
        out.beginArray();
        out.number(point.x);
        out.number(point.y);
        out.endArray();
    }
    out.endArray();
}

void writeShape(BindingsStyleWriter& out, const CustomShape& shape) {
    out.beginObject();
    out.key(shape_keys::fingers);
    out.integer(shape.fingers);
    out.key(shape_keys::name);
    out.string(shape.name);
    out.key(shape_keys::path);
    writePoints(out, shape.path);
    out.key(shape_keys::strokes);
    out.beginArray();
    for (const Stroke& stroke : shape.strokes) writePoints(out, stroke);
    out.endArray();
    out.endObject();
}

void writeGesture(BindingsStyleWriter& out, const Gesture& gesture) {
    if (!gesture.custom) {
        out.string(gesture.id);
        return;
    }
    out.beginObject();
    out.key(gesture_keys::custom);
    writeShape(out, *gesture.custom);
    out.key(gesture_keys::id);
    out.string(gesture.id);
    out.endObject();
}

void writeShortcut(BindingsStyleWriter& out, const KeyShortcut& shortcut) {
    out.beginObject();
    out.key(key_shortcut_keys::key);
    out.integer(shortcut.key);
    out.key(key_shortcut_keys::modifiers);
    out.beginArray();
    for (const KeyModifier& modifier : KeyShortcut::modifiers()) {
        if ((shortcut.flags & modifier.flag) == modifier.flag) out.string(modifier.name);
    }
    out.endArray();
    out.endObject();
}

void writeAction(BindingsStyleWriter& out, const ActionRef& action) {
    out.beginObject();
    if (action.app) {
        out.key(action_ref_keys::app);
        out.string(action.app->absoluteString());
    }
    out.key(action_ref_keys::appID);
    out.string(action.appID);
    out.key(action_ref_keys::optionID);
    out.string(action.optionID);
    if (action.shortcut) {
        out.key(action_ref_keys::shortcut);
        writeShortcut(out, *action.shortcut);
    }
    out.endObject();
}

void writeBinding(BindingsStyleWriter& out, const GestureBinding& binding) {
    out.beginObject();
    out.key(binding_keys::action);
    writeAction(out, binding.action);
    out.key(binding_keys::createdAt);
    out.number(binding.createdAt);
    out.key(binding_keys::gesture);
    writeGesture(out, binding.gesture);
    out.key(binding_keys::id);
    out.string(binding.id);
    out.endObject();
}

// About what the printed file takes, so that the text is not regrown and copied as it is written.
std::size_t expectedFileSize(const std::vector<GestureBinding>& bindings) {
    constexpr std::size_t bytesPerBinding = 320;  // members, action, id and date, indented
    // "[", two coordinates and "]" on lines of their own, deep in: a stroke point with three-decimal
    // coordinates, the most common kind, takes 70 bytes. Guessing low costs a doubling of the
    // buffer, which on a start is worth more than the whole print.
    constexpr std::size_t bytesPerPoint = 72;
    std::size_t points = 0;
    for (const GestureBinding& binding : bindings) {
        if (!binding.gesture.custom) continue;
        points += binding.gesture.custom->path.size();
        for (const Stroke& stroke : binding.gesture.custom->strokes) points += stroke.size();
    }
    return bindings.size() * bytesPerBinding + points * bytesPerPoint;
}

}  // namespace

std::string encodeBindingsFile(const std::vector<GestureBinding>& bindings) {
    BindingsStyleWriter out;
    out.reserve(expectedFileSize(bindings));
    out.beginArray();
    for (const GestureBinding& binding : bindings) writeBinding(out, binding);
    out.endArray();
    return out.take();
}

std::vector<GestureBinding> decodeBindingsFile(std::string_view bytes) {
    nlohmann::json file;
    try {
        file = nlohmann::json::parse(bytes);
    } catch (const nlohmann::json::exception& error) {
        // Not only syntax errors: a number too large for a double ("1e999") is an out_of_range.
        throw BindingsFileError(std::string("not valid JSON: ") + error.what());
    }
    if (!file.is_array()) throw BindingsFileError("the file is not a JSON array of bindings");
    std::vector<GestureBinding> bindings;
    bindings.reserve(file.size());
    for (std::size_t i = 0; i < file.size(); ++i) {
        try {
            bindings.push_back(decodeBinding(file[i]));
        } catch (const BindingsFileError& error) {
            throw BindingsFileError("binding " + std::to_string(i + 1) + ": " + error.what());
        }
    }
    return bindings;
}

}  // namespace ostrelle
