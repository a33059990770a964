#!/usr/bin/env bash
# Configures and builds one flavour of the project: build.sh DIR [extra cmake arguments...]
# With OSTRELLE_BUILD_TARGET set, builds only that target.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
dir="$1"; shift
cmake -S "$root" -B "$dir" -G Ninja "$@" >/dev/null
cmake --build "$dir" --parallel "$(nproc)" ${OSTRELLE_BUILD_TARGET:+--target "$OSTRELLE_BUILD_TARGET"}
