#pragma once

#include <cstdio>
#include <cstdlib>

namespace ostrelle {

// A broken precondition is a programming error: say what broke and stop, rather than guess.
[[noreturn]] inline void contractViolation(const char* what) {
    std::fprintf(stderr, "ostrelle: programming error: %s\n", what);
    std::abort();
}

}  // namespace ostrelle
