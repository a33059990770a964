#!/usr/bin/env bash
# Runs clang-tidy (.clang-tidy) over the portable core, using the compile commands of a
# configured build folder: tidy.sh [BUILD_DIR] (default build). Any finding fails the script.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
build="${1:-$root/build}"
cd "$root"
mapfile -t files < <(git ls-files -- 'src/support/*.cpp' 'src/gestures/*.cpp' 'src/recognition/*.cpp' \
  'src/actions/*.cpp' 'src/store/*.cpp' 'src/engine/*.cpp')
# The compile commands come from GCC; clang-tidy must not stop at GCC-only warning options.
printf '%s\n' "${files[@]}" | xargs -P "$(nproc)" -n 4 \
  clang-tidy -p "$build" --quiet --extra-arg=-Wno-unknown-warning-option
echo "clang-tidy: ${#files[@]} core files clean"
