#pragma once

#include "engine/hot_key_registrar.h"

namespace ostrelle {

// Hot keys for runs without a desktop (replays, headless runs): every combination registers and
// nothing is ever pressed.
class InertHotKeyRegistrar final : public HotKeyRegistrar {
  public:
    Registration registerHotKey(std::uint32_t, std::uint32_t) override { return {success, ++lastReference_}; }
    void unregisterHotKey(Reference) override {}
    void setPressHandler(std::function<void()>) override {}

  private:
    Reference lastReference_ = 0;
};

}  // namespace ostrelle
