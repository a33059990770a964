#include "recognition/recording.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <istream>
#include <limits>
#include <nlohmann/json.hpp>
#include <ostream>

#include "support/json_line.h"

namespace ostrelle {
namespace {

constexpr std::size_t touchFields = 3;  // [id, x, y]

bool isIgnored(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    return first == std::string_view::npos || text[first] == '#';
}

// Numbers in messages as the user wrote them, near enough: the shortest round-tripping text.
std::string numberText(double value) {
    return nlohmann::json(value).dump();
}

std::string touchProblem(std::size_t index, std::string_view what) {
    return fmt::format("touch {}: {}", index, what);
}

double decodeCoordinate(const nlohmann::json& value, std::size_t index, std::string_view name) {
    if (!value.is_number() || !std::isfinite(value.get<double>())) {
        throw std::invalid_argument(touchProblem(index, fmt::format("{} must be a finite number", name)));
    }
    return value.get<double>();
}

Contact decodeTouch(const nlohmann::json& touch, std::size_t index) {
    if (!touch.is_array() || touch.size() != touchFields) {
        throw std::invalid_argument(touchProblem(index, "expected [id, x, y]"));
    }
    const nlohmann::json& id = touch[0];
    constexpr auto largestID = static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max());
    const bool idFits =
        id.is_number_integer() && (!id.is_number_unsigned() || id.get<std::uint64_t>() <= largestID);
    if (!idFits) throw std::invalid_argument(touchProblem(index, "id must be an integer"));
    return {id.get<std::int64_t>(), decodeCoordinate(touch[1], index, "x"),
            decodeCoordinate(touch[2], index, "y")};
}

RecordedFrame decodeFrame(double time, const nlohmann::json& touches) {
    if (!touches.is_array()) throw std::invalid_argument("\"touches\" must be an array");
    RecordedFrame frame{time, {}};
    frame.contacts.reserve(touches.size());
    for (std::size_t i = 0; i < touches.size(); ++i) {
        const Contact contact = decodeTouch(touches[i], i);
        // Two fingers under one id cannot be told apart; better to stop than to pick one.
        const bool seen = std::any_of(frame.contacts.begin(), frame.contacts.end(),
                                      [&](const Contact& other) { return other.id == contact.id; });
        if (seen) throw std::invalid_argument(fmt::format("touch {}: id {} appears twice", i, contact.id));
        frame.contacts.push_back(contact);
    }
    return frame;
}

// One non-blank, non-comment line; throws std::invalid_argument with the problem.
RecordingEvent decodeLine(std::string_view text) {
    nlohmann::json line;
    try {
        line = nlohmann::json::parse(text);
    } catch (const nlohmann::json::out_of_range&) {
        // nlohmann refuses a number beyond the double range (1e999) while parsing.
        throw std::invalid_argument("number out of range");
    } catch (const nlohmann::json::exception&) {
        throw std::invalid_argument("not valid JSON");
    }
    if (!line.is_object()) throw std::invalid_argument("expected a JSON object");

    const auto t = line.find("t");
    if (t == line.end()) throw std::invalid_argument("missing \"t\"");
    if (!t->is_number()) throw std::invalid_argument("\"t\" must be a number");
    const double time = t->get<double>();
    // Cannot come from the parser today (see above); kept so a lax parser cannot let one through.
    if (!std::isfinite(time)) throw std::invalid_argument("\"t\" must be finite");

    const auto touches = line.find("touches");
    const auto click = line.find("click");
    const bool hasTouches = touches != line.end();
    const bool hasClick = click != line.end();
    if (hasTouches && hasClick) throw std::invalid_argument("has both \"touches\" and \"click\"");
    if (hasTouches) return decodeFrame(time, *touches);
    if (hasClick) {
        if (!click->is_boolean()) throw std::invalid_argument("\"click\" must be true or false");
        return RecordedClick{time, click->get<bool>()};
    }
    throw std::invalid_argument("has neither \"touches\" nor \"click\"");
}

}  // namespace

double timeOf(const RecordingEvent& event) {
    return std::visit([](const auto& e) { return e.time; }, event);
}

std::optional<RecordingEvent> RecordingReader::next() {
    while (std::getline(input_, text_)) {
        ++line_;
        if (isIgnored(text_)) continue;
        try {
            RecordingEvent event = decodeLine(text_);
            const double time = timeOf(event);
            if (previousTime_ && time < *previousTime_) {
                throw std::invalid_argument(fmt::format("time {} is before the previous event's {}",
                                                        numberText(time), numberText(*previousTime_)));
            }
            previousTime_ = time;
            return event;
        } catch (const std::invalid_argument& problem) {
            throw RecordingError(line_, problem.what());
        }
    }
    if (input_.bad()) throw std::runtime_error(fmt::format("reading failed after line {}", line_));
    return std::nullopt;
}

std::string recordingLine(const RecordingEvent& event) {
    nlohmann::ordered_json line = nlohmann::ordered_json::object();
    line["t"] = timeOf(event);
    if (const auto* frame = std::get_if<RecordedFrame>(&event)) {
        nlohmann::ordered_json touches = nlohmann::ordered_json::array();
        for (const Contact& c : frame->contacts) touches.push_back({c.id, c.x, c.y});
        line["touches"] = std::move(touches);
    } else {
        line["click"] = std::get<RecordedClick>(event).overOwnWindow;
    }
    return jsonLine(line);
}

void writeRecordingEvent(std::ostream& output, const RecordingEvent& event) {
    output << recordingLine(event) << '\n';
}

}  // namespace ostrelle
