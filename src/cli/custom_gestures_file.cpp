#include "cli/custom_gestures_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>

#include "gestures/gesture_json.h"
#include "support/json_read.h"

namespace ostrelle::cli {
namespace {

// The line of a parse failure: nlohmann counts bytes from 1 and points one past the end for
// input that stops too early.
std::size_t lineOfFailure(const std::string& contents, const nlohmann::json::parse_error& error) {
    const std::size_t end = std::clamp<std::size_t>(error.byte, 1, contents.size() + 1);
    const auto before = contents.begin() + static_cast<std::ptrdiff_t>(end - 1);
    return 1 + static_cast<std::size_t>(std::count(contents.begin(), before, '\n'));
}

nlohmann::json readJSON(const std::string& file) {
    if (std::filesystem::is_directory(file))
        throw std::runtime_error(fmt::format("{}: is a directory", file));
    std::ifstream input(file, std::ios::binary);
    if (!input) throw std::runtime_error(fmt::format("cannot open {}: {}", file, std::strerror(errno)));
    std::ostringstream text;
    text << input.rdbuf();
    if (input.bad()) throw std::runtime_error(fmt::format("cannot read {}", file));
    const std::string contents = text.str();
    try {
        return nlohmann::json::parse(contents);
    } catch (const nlohmann::json::parse_error& error) {
        throw std::runtime_error(
            fmt::format("{}: not valid JSON (line {})", file, lineOfFailure(contents, error)));
    } catch (const nlohmann::json::out_of_range&) {
        // nlohmann refuses a number beyond the double range (1e999) without saying where.
        throw std::runtime_error(fmt::format("{}: not valid JSON (a number is out of range)", file));
    }
}

Gesture decodeCustomGesture(const nlohmann::json& value, const std::string& path) {
    // Without a string id the gesture reader falls back to the legacy form and would complain
    // about "fingers"; here only the id form makes sense.
    if (value.is_object() && value.contains("id"))
        json_read::string(value.at("id"), json_read::member(path, "id"));
    Gesture gesture = decodeGesture(value, path);
    if (gesture.custom) return gesture;
    // decodeGesture drops a bad shape silently; read it again to say what is wrong with it.
    if (value.is_object() && value.contains("custom")) {
        decodeShape(value.at("custom"), json_read::member(path, "custom"));
    }
    throw JSONError(path, "expected a gesture with a \"custom\" shape");
}

}  // namespace

std::vector<Gesture> loadCustomGestures(const std::string& file) {
    const nlohmann::json root = readJSON(file);
    if (!root.is_array())
        throw std::runtime_error(fmt::format("{}: expected a JSON array of custom gestures", file));
    std::vector<Gesture> gestures;
    gestures.reserve(root.size());
    try {
        for (std::size_t i = 0; i < root.size(); ++i) {
            gestures.push_back(decodeCustomGesture(root[i], json_read::element("", i)));
        }
    } catch (const JSONError& error) {
        throw std::runtime_error(fmt::format("{}: {}", file, error.what()));
    }
    return gestures;
}

}  // namespace ostrelle::cli
