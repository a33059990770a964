#include "actions/system_port.h"

namespace ostrelle {

std::string_view toString(MouseEventType type) {
    switch (type) {
        case MouseEventType::leftDown:
            return "leftDown";
        case MouseEventType::leftUp:
            return "leftUp";
    }
    return "unknown";
}

}  // namespace ostrelle
