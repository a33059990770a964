#include "support/url.h"

#include <cctype>

namespace ostrelle {
namespace {

constexpr std::string_view fileScheme = "file";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool isUnreserved(unsigned char c) {
    return std::isalnum(c) != 0 || c == '-' || c == '.' || c == '_' || c == '~';
}

bool isSubDelimiter(unsigned char c) {
    return std::string_view("!$&'()*+,;=").find(static_cast<char>(c)) != std::string_view::npos;
}

bool isAllowedInURL(unsigned char c) {
    return isUnreserved(c) || isSubDelimiter(c) ||
           std::string_view(":/?#[]@").find(static_cast<char>(c)) != std::string_view::npos;
}

bool isAllowedInPath(unsigned char c) {
    return isUnreserved(c) || isSubDelimiter(c) || c == ':' || c == '@' || c == '/';
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

void appendEscaped(std::string& out, unsigned char c) {
    out += '%';
    out += hexDigits[c >> 4];
    out += hexDigits[c & 0xF];
}

std::string percentDecoded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 &&
            hexValue(text[i + 2]) >= 0) {
            result += static_cast<char>(hexValue(text[i + 1]) * 16 + hexValue(text[i + 2]));
            i += 2;
        } else {
            result += text[i];
        }
    }
    return result;
}

// The text before the first colon, when it has the form of a scheme.
std::string_view schemeOf(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == std::string_view::npos || colon == 0) return {};
    if (std::isalpha(static_cast<unsigned char>(text[0])) == 0) return {};
    for (std::size_t i = 1; i < colon; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (std::isalnum(c) == 0 && c != '+' && c != '-' && c != '.') return {};
    }
    return text.substr(0, colon);
}

}  // namespace

std::optional<URL> URL::parse(std::string_view text) {
    if (text.empty()) return std::nullopt;
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        const bool escape =
            c == '%' && i + 2 < text.size() && hexValue(text[i + 1]) >= 0 && hexValue(text[i + 2]) >= 0;
        if (escape || (c != '%' && isAllowedInURL(c))) {
            result += static_cast<char>(c);
        } else {
            appendEscaped(result, c);
        }
    }
    return URL(std::move(result));
}

URL URL::fileURL(std::string_view path, bool isDirectory) {
    std::string result(fileScheme);
    result += "://";
    for (char ch : path) {
        const auto c = static_cast<unsigned char>(ch);
        if (isAllowedInPath(c)) {
            result += ch;
        } else {
            appendEscaped(result, c);
        }
    }
    if (isDirectory && (path.empty() || path.back() != '/')) result += '/';
    return URL(std::move(result));
}

bool URL::isFileURL() const {
    const std::string_view scheme = schemeOf(text_);
    if (scheme.size() != fileScheme.size()) return false;
    for (std::size_t i = 0; i < scheme.size(); ++i) {
        if (std::tolower(static_cast<unsigned char>(scheme[i])) != fileScheme[i]) return false;
    }
    return true;
}

std::string URL::path() const {
    std::string_view rest(text_);
    rest.remove_prefix(schemeOf(rest).size());
    if (!rest.empty() && rest.front() == ':') rest.remove_prefix(1);
    if (rest.substr(0, 2) == "//") {
        // Skip the authority ("localhost" or nothing for a file URL).
        const auto slash = rest.find('/', 2);
        rest = slash == std::string_view::npos ? std::string_view() : rest.substr(slash);
    }
    rest = rest.substr(0, rest.find_first_of("?#"));
    std::string decoded = percentDecoded(rest);
    if (decoded.size() > 1 && decoded.back() == '/') decoded.pop_back();
    return decoded;
}

std::string URL::lastPathComponent() const {
    std::string full = path();
    if (full == "/") return full;
    const auto slash = full.rfind('/');
    return slash == std::string::npos ? full : full.substr(slash + 1);
}

std::string URL::pathExtension() const {
    const std::string name = lastPathComponent();
    const auto dot = name.rfind('.');
    if (dot == std::string::npos || dot == 0) return "";
    return name.substr(dot + 1);
}

}  // namespace ostrelle
