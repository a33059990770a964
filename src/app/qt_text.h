#pragma once

#include <QString>
#include <string>

namespace ostrelle::app {

// The system's texts are UTF-8 constants and strings; Qt shows QStrings.
inline QString text(const char* utf8) {
    return QString::fromUtf8(utf8);
}
inline QString text(const std::string& utf8) {
    return QString::fromStdString(utf8);
}

}  // namespace ostrelle::app
