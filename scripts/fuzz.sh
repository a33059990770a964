#!/usr/bin/env bash
# Builds the bindings file fuzzer (clang, libFuzzer, ASan and UBSan) in build-fuzz and runs it
# for a bounded time: fuzz.sh [SECONDS] (default 60).
# Inputs it discovers go to build-fuzz/corpus; fuzz/corpus holds the checked-in seeds. A crash
# leaves its input in build-fuzz/ as crash-<hash> and fails the script.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
seconds="${1:-60}"
dir="$root/build-fuzz"

cmake -S "$root" -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DOSTRELLE_FUZZ=ON -DOSTRELLE_TESTS=OFF -DOSTRELLE_BENCH=OFF >/dev/null
cmake --build "$dir" --target bindings_file_fuzz --parallel "$(nproc)"

mkdir -p "$dir/corpus"
"$dir/fuzz/bindings_file_fuzz" -max_total_time="$seconds" -print_final_stats=1 \
  -dict="$root/fuzz/bindings.dict" -artifact_prefix="$dir/" \
  "$dir/corpus" "$root/fuzz/corpus"
