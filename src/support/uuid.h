#pragma once

#include <string>

namespace ostrelle {

// A fresh random (version 4) UUID in canonical upper-case text: 8-4-4-4-12 hexadecimal digits.
std::string newUUIDString();

// Whether text is a UUID in that canonical upper-case form.
bool isCanonicalUUID(const std::string& text);

}  // namespace ostrelle
