#!/usr/bin/env bash
# Installs what is missing, builds in Release and replays every bundled example recording.
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" "$root/build" -DCMAKE_BUILD_TYPE=Release -DOSTRELLE_TESTS=OFF -DOSTRELLE_BENCH=OFF
cli="$root/build/ostrelle-cli"
shopt -s nullglob
for recording in "$root"/examples/*.jsonl; do
  echo "== $(basename "$recording")"
  custom=()
  shapes="${recording%.jsonl}.shapes.json"
  [ -f "$shapes" ] && custom=(--custom "$shapes")
  "$cli" replay "$recording" "${custom[@]}"
done
