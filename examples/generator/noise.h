#pragma once

#include <cstdint>

namespace ostrelle::examples {

// Seeded pseudo-random numbers from integer arithmetic only (splitmix64), so that the same
// seed gives the same recordings with every compiler and standard library.
class Noise {
  public:
    explicit Noise(std::uint64_t seed) : state_(seed) {}

    std::uint64_t next() {
        state_ += 0x9e3779b97f4a7c15ULL;
        std::uint64_t z = state_;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9ULL;
        z = (z ^ (z >> 27)) * 0x94d049bb133111ebULL;
        return z ^ (z >> 31);
    }

    // Uniform in [0, 1), from the top 53 bits.
    double unit() {
        constexpr double twoToMinus53 = 1.0 / 9007199254740992.0;
        return static_cast<double>(next() >> 11) * twoToMinus53;
    }

    double between(double low, double high) { return low + (high - low) * unit(); }

    // A fresh generator for one finger or one gesture, so adding a gesture to a file does not
    // change the noise of the gestures before it.
    Noise fork() { return Noise(next()); }

  private:
    std::uint64_t state_;
};

}  // namespace ostrelle::examples
