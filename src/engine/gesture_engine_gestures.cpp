// What happens with each frame, click and recognized gesture.
#include "engine/gesture_engine.h"
#include "gestures/gesture_catalog.h"
#include "support/uuid.h"

namespace ostrelle {

void GestureEngine::handle(std::span<const Contact> contacts, double time) {
    if (!contacts.empty()) {
        lastTouchAt_ = services_.clock();
        publish(receivedTouches_, true);
    }
    const std::optional<Gesture> gesture = recognizer_.process(contacts, time);
    updateReading();
    if (isCapturing_) liveTrace_.setContacts(contacts);
    // The strokes are republished only when the drawing gained a point.
    if (isCapturing_ && recognizer_.pathCount() != tracedPoints_) {
        tracedPoints_ = recognizer_.pathCount();
        liveTrace_.setStrokes(recognizer_.liveStrokes());
    }
    // Frames never count as over our own window; only clicks can be.
    if (gesture) {
        if (hooks.recognized) hooks.recognized(*gesture);
        recognized(*gesture, false);
    }
    if (recognizer_.touching() == 0) ignoreSession_ = false;
}

void GestureEngine::click(bool onOwnUI) {
    const std::optional<Gesture> gesture = recognizer_.physicalClick();
    if (!gesture) return;
    if (hooks.recognized) hooks.recognized(*gesture);
    updateReading();
    recognized(*gesture, onOwnUI);
}

void GestureEngine::recognized(const Gesture& gesture, bool onOwnUI) {
    const int fingers = gesture.fingers();
    const Gesture tap(Gesture::genericID(fingers, Motion::tap, std::nullopt));
    const Gesture doubleTap(Gesture::genericID(fingers, Motion::doubleTap, std::nullopt));
    const bool doubleTapOffered = GestureCatalog::isEnabled(doubleTap);

    // A double tap the catalog does not offer is just another tap.
    const Gesture& g = (gesture == doubleTap && !doubleTapOffered) ? tap : gesture;
    if (!GestureCatalog::isEnabled(g)) return;

    if (isCapturing_) {
        if (ignoreSession_ || g.fingers() < 2) return;
        if (g == tap && doubleTapOffered) {
            deferTap([this, g] {
                if (isCapturing_)
                    publish(lastDetection_, std::optional<Detection>(Detection{newUUIDString(), g}));
            });
            return;
        }
        cancelPendingTap();
        publish(lastDetection_, std::optional<Detection>(Detection{newUUIDString(), g}));
        return;
    }

    // A click on our own window is the user working our interface, not a gesture to act on.
    if (onOwnUI) return;

    if (g == tap && doubleTapOffered && runnable(doubleTap)) {
        deferTap([this, g] { run(g); });
        return;
    }
    if (g == doubleTap) {
        cancelPendingTap();
        run(runnable(g) ? g : tap);
        return;
    }
    run(g);
}

void GestureEngine::deferTap(std::function<void()> work) {
    // Replaces an earlier pending tap without cancelling it: that one has its own moment.
    pendingTap_ = services_.queue.postAfter(GestureRecognizer::doubleTapWindow, whileAlive(std::move(work)));
}

void GestureEngine::cancelPendingTap() {
    pendingTap_.cancel();
}

const GestureBinding* GestureEngine::runnable(const Gesture& gesture) const {
    return services_.store.bindingFor(gesture);
}

void GestureEngine::run(const Gesture& gesture) {
    if (!GestureCatalog::isEnabled(gesture)) return;
    const GestureBinding* binding = runnable(gesture);
    if (!binding) return;
    // A copy: running the action may change the store (and with it the binding's storage).
    const ActionRef action = binding->action;
    if (hooks.run) hooks.run(action);
    if (services_.settings.boolValue(settings_keys::hapticFeedback).value_or(false)) {
        services_.system.feedback().haptic();
    }
    runner_.run(action);
}

void GestureEngine::updateReading() {
    publish(isReading_, isCapturing_ && recognizer_.touching() > 1 && !recognizer_.consumed());
}

}  // namespace ostrelle
