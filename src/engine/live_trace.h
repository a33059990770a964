#pragma once

#include <span>
#include <vector>

#include "gestures/custom_shape.h"
#include "recognition/contact.h"
#include "support/observers.h"

namespace ostrelle {

// The strokes being drawn right now and the fingers down, for the trackpad preview while the
// editor captures.
class LiveTrace {
  public:
    // Every frame while capturing; the same storage is reused, so a frame allocates nothing once
    // as many fingers as now have been down.
    std::span<const Contact> contacts() const { return contacts_; }
    void setContacts(std::span<const Contact> contacts) {
        if (contacts.empty() && contacts_.empty()) return;
        contacts_.assign(contacts.begin(), contacts.end());
        observers.notify();
    }

    const std::vector<Stroke>& strokes() const { return strokes_; }
    void setStrokes(std::vector<Stroke> strokes) {
        strokes_ = std::move(strokes);
        observers.notify();
    }

    ObserverList observers;

  private:
    std::vector<Stroke> strokes_;
    std::vector<Contact> contacts_;
};

}  // namespace ostrelle
