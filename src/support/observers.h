#pragma once

#include <cstdint>
#include <functional>
#include <utility>
#include <vector>

namespace ostrelle {

// Callbacks to run whenever an observable object changes. An observer may remove itself
// (or others) while being notified; removals take effect for the notifications after it.
class ObserverList {
  public:
    using Token = std::uint64_t;

    Token add(std::function<void()> observer) {
        observers_.emplace_back(++lastToken_, std::move(observer));
        return lastToken_;
    }
    void remove(Token token) {
        std::erase_if(observers_, [token](const auto& entry) { return entry.first == token; });
    }
    void notify() const {
        const auto snapshot = observers_;
        for (const auto& entry : snapshot) entry.second();
    }
    std::size_t size() const { return observers_.size(); }

  private:
    std::vector<std::pair<Token, std::function<void()>>> observers_;
    Token lastToken_ = 0;
};

}  // namespace ostrelle
