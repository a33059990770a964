#!/usr/bin/env bash
# Configures and builds one flavour of the project: build.sh DIR [extra cmake arguments...]
# With OSTRELLE_BUILD_TARGET set (one or more names), builds only those targets.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
dir="$1"; shift
cmake -S "$root" -B "$dir" -G Ninja "$@" >/dev/null
# shellcheck disable=SC2086 # a list of targets
cmake --build "$dir" --parallel "$(nproc)" ${OSTRELLE_BUILD_TARGET:+--target $OSTRELLE_BUILD_TARGET}
