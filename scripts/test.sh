#!/usr/bin/env bash
# Installs what is missing, builds in Release and runs every test.
# With --sanitize, builds and runs the core's unit tests and the Linux backend's under AddressSanitizer and
# UndefinedBehaviorSanitizer instead.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
if [ "${1:-}" = "--sanitize" ]; then
  dir="$root/build-sanitize"
  OSTRELLE_BUILD_TARGET="ostrelle_tests ostrelle_platform_tests" "$root/scripts/build.sh" "$dir" -DCMAKE_BUILD_TYPE=Debug -DOSTRELLE_SANITIZE=ON -DOSTRELLE_TESTS=ON \
    -DOSTRELLE_PROGRAM_TESTS=OFF -DOSTRELLE_BENCH=OFF
else
  dir="$root/build"
  "$root/scripts/build.sh" "$dir" -DCMAKE_BUILD_TYPE=Release -DOSTRELLE_SANITIZE=OFF -DOSTRELLE_TESTS=ON \
    -DOSTRELLE_PROGRAM_TESTS=ON -DOSTRELLE_BENCH=ON
fi
ctest --test-dir "$dir" --output-on-failure --parallel "$(nproc)"
