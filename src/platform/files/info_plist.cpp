#include "platform/files/info_plist.h"

#include <array>
#include <utility>

namespace ostrelle {
namespace {

// Every XML property list has this root element; a binary one starts with "bplist" instead.
constexpr std::string_view plistElement = "<plist";
constexpr std::string_view commentStart = "<!--";
constexpr std::string_view commentEnd = "-->";

// The five entities XML predefines: all a property list writer uses.
std::string unescaped(std::string_view text) {
    static constexpr std::array<std::pair<std::string_view, char>, 5> entities{{
        {"&amp;", '&'},
        {"&lt;", '<'},
        {"&gt;", '>'},
        {"&quot;", '"'},
        {"&apos;", '\''},
    }};
    std::string result;
    for (std::size_t at = 0; at < text.size();) {
        bool replaced = false;
        for (const auto& [entity, character] : entities) {
            if (text.substr(at).starts_with(entity)) {
                result += character;
                at += entity.size();
                replaced = true;
                break;
            }
        }
        if (!replaced) result += text[at++];
    }
    return result;
}

struct Tag {
    std::string_view name;
    bool closing = false;      // </name>
    bool selfClosing = false;  // <name/>
};

Tag parseTag(std::string_view inside) {
    Tag tag;
    tag.closing = inside.starts_with('/');
    if (tag.closing) inside.remove_prefix(1);
    tag.selfClosing = inside.ends_with('/');
    tag.name = inside.substr(0, inside.find_first_of(" \t\r\n/"));
    return tag;
}

}  // namespace

std::optional<std::string> topLevelPlistString(std::string_view plist, std::string_view key) {
    if (plist.find(plistElement) == std::string_view::npos) return std::nullopt;
    int depth = 0;          // dict and array elements open around the reader
    bool afterKey = false;  // the last top-level element read was the key asked for
    for (std::size_t at = plist.find('<'); at != std::string_view::npos; at = plist.find('<', at)) {
        if (plist.substr(at).starts_with(commentStart)) {
            at = plist.find(commentEnd, at);
            if (at == std::string_view::npos) return std::nullopt;
            continue;
        }
        const std::size_t end = plist.find('>', at);
        if (end == std::string_view::npos) return std::nullopt;
        const std::string_view inside = plist.substr(at + 1, end - at - 1);
        at = end + 1;
        if (inside.starts_with('?') || inside.starts_with('!')) continue;  // declaration, doctype

        const Tag tag = parseTag(inside);
        if (tag.name == "dict" || tag.name == "array") {
            if (tag.closing) {
                --depth;
            } else if (!tag.selfClosing) {
                ++depth;
            }
            afterKey = false;
            continue;
        }
        if (tag.closing || depth != 1) continue;
        std::string text;
        if (!tag.selfClosing) {
            const std::size_t close = plist.find('<', at);
            if (close == std::string_view::npos) return std::nullopt;
            text = unescaped(plist.substr(at, close - at));
            at = close;
        }
        if (tag.name == "key") {
            afterKey = text == key;
        } else if (afterKey && tag.name == "string") {
            return text;
        } else {
            afterKey = false;
        }
    }
    return std::nullopt;
}

}  // namespace ostrelle
