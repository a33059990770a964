#include "support/uuid.h"

#include <uuid/uuid.h>

#include <array>
#include <cctype>

namespace ostrelle {

std::string newUUIDString() {
    uuid_t raw;
    uuid_generate_random(raw);
    std::array<char, 37> text{};
    uuid_unparse_upper(raw, text.data());
    return std::string(text.data());
}

bool isCanonicalUUID(const std::string& text) {
    constexpr std::size_t canonicalLength = 36;
    if (text.size() != canonicalLength) return false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (i == 8 || i == 13 || i == 18 || i == 23) {
            if (c != '-') return false;
        } else if (!std::isdigit(static_cast<unsigned char>(c)) && !(c >= 'A' && c <= 'F')) {
            return false;
        }
    }
    return true;
}

}  // namespace ostrelle
