// Start-up, the on/off switch, capture mode, keeping the touch source running, and the toggle key.
#include "engine/gesture_engine.h"

#include <fmt/format.h>

#include <ctime>
#include <nlohmann/json.hpp>

#include "actions/key_shortcut_json.h"
#include "actions/linux_actions.h"
#include "support/log.h"

namespace ostrelle {
namespace {

constexpr const char* noTouchYet = "none since launch";
constexpr const char* turnedOnReason = "gestures turned on";
constexpr const char* wokeUpReason = "Mac woke up";

}  // namespace

std::optional<KeyShortcut> GestureEngine::storedToggleShortcut(const Settings& settings) {
    const auto data = settings.dataValue(settings_keys::toggleShortcut);
    if (!data) return std::nullopt;
    try {
        return keyShortcutFromJSON(nlohmann::json::parse(*data));
    } catch (const std::exception&) {
        return std::nullopt;  // a shortcut stored by another version that no longer reads is forgotten
    }
}

GestureEngine::GestureEngine(Services services)
    : services_(std::move(services)), runner_(services_.system, services_.queue, services_.host) {
    isEnabled_ = services_.settings.boolValue(settings_keys::listening).value_or(true);

    if (auto shortcut = storedToggleShortcut(services_.settings); shortcut && shortcut->isGlobal()) {
        toggleShortcut_ = shortcut;
        const auto status = hotKey().set(shortcut);
        toggleShortcutError_ = registrationError(status, shortcut);
    }

    // The current list comes at once, so the recognizer knows the user's shapes from the start.
    customsUpdates_ = services_.store.observers.add(whileAlive([this] { copyCustomShapes(); }));
    copyCustomShapes();
    apply();
}

GestureEngine::~GestureEngine() {
    *alive_ = false;
    services_.store.observers.remove(customsUpdates_);
    pendingTap_.cancel();
    services_.source.stop();
}

std::function<void()> GestureEngine::whileAlive(std::function<void()> work) const {
    return [alive = std::weak_ptr<bool>(alive_), work = std::move(work)] {
        const auto engine = alive.lock();
        if (engine && *engine) work();
    };
}

void GestureEngine::copyCustomShapes() {
    recognizer_.customs = services_.store.customGestures();
}

void GestureEngine::apply() {
    services_.source.stop();
    cancelPendingTap();
    GestureRecognizer fresh;
    fresh.customs = std::move(recognizer_.customs);
    fresh.recordingShapes = isCapturing_;
    recognizer_ = std::move(fresh);
    updateReading();
    ignoreSession_ = false;
    if (!isEnabled_) return;

    auto onFrame = [this, alive = std::weak_ptr<bool>(alive_)](std::span<const Contact> contacts,
                                                               double time) {
        if (const auto engine = alive.lock(); engine && *engine) handle(contacts, time);
    };
    auto onClick = [this, alive = std::weak_ptr<bool>(alive_)](bool onOwnUI) {
        if (const auto engine = alive.lock(); engine && *engine) click(onOwnUI);
    };
    const std::optional<TouchSourceError> failure = services_.source.start(onFrame, onClick);
    if (!failure) {
        if (sourceError_) publish(sourceError_, std::optional<std::string>());
        return;
    }
    publish(sourceError_, std::optional<std::string>(failure->description));
    if (retryPending_) return;
    retryPending_ = true;
    services_.queue.postAfter(startRetryDelay, whileAlive([this] {
                                  retryPending_ = false;
                                  if (sourceError_) apply();
                              }));
}

void GestureEngine::restart(const std::string& reason) {
    const TouchSource::EventCounts counts = services_.source.eventCounts();
    const std::string lastTouch = lastTouchAt_ ? services_.formatTime(*lastTouchAt_) : noTouchYet;
    Log::warning(
        fmt::format("restarting touch input ({}): {} gesture events since the last start, {} with touches; "
                    "last touch {}",
                    reason, counts.all, counts.touched, lastTouch));
    apply();
}

void GestureEngine::setEnabled(bool enabled) {
    publish(isEnabled_, enabled);
    services_.settings.setBool(settings_keys::listening, enabled);
    if (enabled) {
        restart(turnedOnReason);
    } else {
        apply();
    }
}

void GestureEngine::setCapturing(bool capturing) {
    const bool was = isCapturing_;
    publish(isCapturing_, capturing);
    // A session already under way when capture starts is not what the user is about to show us.
    if (capturing && !was && recognizer_.touching() > 0) ignoreSession_ = true;
    if (!capturing) cancelPendingTap();
    recognizer_.recordingShapes = capturing;
    if (!capturing && !liveTrace_.strokes().empty()) liveTrace_.setStrokes({});
    if (!capturing) liveTrace_.setContacts({});
    updateReading();
}

void GestureEngine::retryIfFailed() {
    if (sourceError_) apply();
}

void GestureEngine::systemDidWake() {
    if (isEnabled_) restart(wokeUpReason);
}

ToggleHotKey& GestureEngine::hotKey() {
    if (!hotKey_) {
        hotKey_ = std::make_unique<ToggleHotKey>(services_.hotKeys,
                                                 whileAlive([this] { setEnabled(!isEnabled_); }));
    }
    return *hotKey_;
}

void GestureEngine::setToggleShortcut(const std::optional<KeyShortcut>& shortcut) {
    if (shortcut && !shortcut->isGlobal()) {
        const bool onLinux = services_.host.linuxActions != nullptr;
        publish(toggleShortcutError_,
                std::optional<std::string>(onLinux ? linuxNonGlobalShortcutError : nonGlobalShortcutError));
        return;
    }
    const auto status = hotKey().set(shortcut);
    publish(toggleShortcutError_, registrationError(status, shortcut));
    if (toggleShortcutError_) return;
    publish(toggleShortcut_, shortcut);
    if (shortcut) {
        services_.settings.setData(settings_keys::toggleShortcut, toJSON(*shortcut).dump());
    } else {
        services_.settings.remove(settings_keys::toggleShortcut);
    }
}

void GestureEngine::suspendToggleShortcut(bool suspended) {
    hotKey().setSuspended(suspended);
}

std::optional<std::string> GestureEngine::registrationError(
    HotKeyRegistrar::Status status, const std::optional<KeyShortcut>& shortcut) const {
    if (status == HotKeyRegistrar::success || !shortcut) return std::nullopt;
    const ActionHost& host = services_.host;
    const std::string shown = host.linuxActions
                                  ? linuxDisplay(*shortcut, host.keyboardLayout, host.linuxActions->desktop())
                                  : shortcut->display(host.keyboardLayout);
    if (status == HotKeyRegistrar::alreadyTaken) {
        return shown + " is already used by another app. Pick another.";
    }
    if (status == HotKeyRegistrar::unavailable) return std::string(noGlobalShortcutsError);
    const std::string_view system = host.linuxActions ? "The desktop" : "macOS";
    return fmt::format("{} couldn't register {} (error {}).", system, shown, status);
}

std::string GestureEngine::defaultTimeFormat(double unixSeconds) {
    const auto seconds = static_cast<std::time_t>(unixSeconds);
    std::tm local{};
    localtime_r(&seconds, &local);
    // "Nov 21, 2026 at 11:37:18 PM": an abbreviated date and a standard time.
    std::array<char, 64> text{};
    const std::size_t length = std::strftime(text.data(), text.size(), "%b %d, %Y at %I:%M:%S %p", &local);
    return std::string(text.data(), length);
}

}  // namespace ostrelle
