#include "actions/keyboard_layout.h"

#include <utility>

namespace ostrelle {
namespace {

std::shared_ptr<const KeyboardLayout>& currentLayout() {
    static std::shared_ptr<const KeyboardLayout> layout;
    return layout;
}

}  // namespace

void KeyboardLayout::setCurrent(std::shared_ptr<const KeyboardLayout> layout) {
    currentLayout() = std::move(layout);
}

std::shared_ptr<const KeyboardLayout> KeyboardLayout::current() {
    return currentLayout();
}

}  // namespace ostrelle
