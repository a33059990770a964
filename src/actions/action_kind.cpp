#include "actions/action_kind.h"

#include <array>

#include "support/point.h"

namespace ostrelle {
namespace {

// Indexed like ActionKind::Value's alternatives.
constexpr std::array<std::string_view, 14> caseNames{
    "shortcut",     "selectTab",        "switchApp",      "switchWindow", "openApp",
    "openAppGrid",  "dockNotification", "menuExtra",      "switchSpace",  "mediaKey",
    "commandClick", "duplicateTab",     "customShortcut", "chooseApp",
};
static_assert(caseNames.size() == std::variant_size_v<ActionKind::Value>);

template <typename T>
std::size_t hashValue(const T& value) {
    return std::hash<T>{}(value);
}

struct PayloadHash {
    std::size_t operator()(const ActionKind::Shortcut& k) const { return hashOf(k.shortcut); }
    std::size_t operator()(const ActionKind::SelectTab& k) const { return hashValue(k.last); }
    std::size_t operator()(const ActionKind::SwitchApp& k) const { return hashValue(k.reverse); }
    std::size_t operator()(const ActionKind::SwitchWindow& k) const { return hashValue(k.reverse); }
    std::size_t operator()(const ActionKind::OpenApp& k) const { return hashValue(k.path); }
    std::size_t operator()(const ActionKind::OpenAppGrid&) const { return 0; }
    std::size_t operator()(const ActionKind::DockNotification& k) const { return hashValue(k.name); }
    std::size_t operator()(const ActionKind::MenuExtra& k) const {
        std::size_t seed = k.identifiers.size();
        for (const std::string& identifier : k.identifiers) hashCombine(seed, hashValue(identifier));
        return seed;
    }
    std::size_t operator()(const ActionKind::SwitchSpace& k) const { return hashValue(k.left); }
    std::size_t operator()(const ActionKind::MediaKey& k) const { return hashValue(k.key); }
    std::size_t operator()(const ActionKind::CommandClick&) const { return 0; }
    std::size_t operator()(const ActionKind::DuplicateTab&) const { return 0; }
    std::size_t operator()(const ActionKind::CustomShortcut&) const { return 0; }
    std::size_t operator()(const ActionKind::ChooseApp&) const { return 0; }
};

}  // namespace

std::string_view toString(const ActionKind& kind) {
    return caseNames[kind.value.index()];
}

std::size_t hashOf(const ActionKind& kind) {
    std::size_t seed = kind.value.index();
    hashCombine(seed, std::visit(PayloadHash{}, kind.value));
    return seed;
}

}  // namespace ostrelle
