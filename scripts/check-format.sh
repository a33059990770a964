#!/usr/bin/env bash
# Fails when a C++ file of the project is not formatted as .clang-format says; with --fix,
# formats them in place instead.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files -- '*.h' '*.cpp')
if [ "${1:-}" = "--fix" ]; then
  clang-format -i "${files[@]}"
else
  clang-format --dry-run --Werror "${files[@]}"
  echo "formatting: ${#files[@]} files as .clang-format says"
fi
