#!/usr/bin/env bash
# Installs what is missing, builds in Release and replays every bundled example recording:
# for each file its description, the gestures recognized (by name), and whether they are the
# ones its "# expect:" lines promise. Exits with 1 when any recording does not match.
set -euo pipefail
export LC_ALL=C  # decimal points in printf, whatever the user's locale
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"
"$root/scripts/build.sh" "$root/build-demo" -DCMAKE_BUILD_TYPE=Release -DOSTRELLE_TESTS=OFF -DOSTRELLE_BENCH=OFF
cli="$root/build-demo/ostrelle-cli"

# The value of a string member in one line of the CLI's JSON output (the first one named so).
json_string() {
  local key="$1" line="$2" pattern="\"$1\": \"((\\\\.|[^\"\\\\])*)\""
  [[ $line =~ $pattern ]] || return 1
  local value="${BASH_REMATCH[1]}"
  value="${value//\\\"/\"}"
  value="${value//\\\//\/}"
  printf '%s' "${value//\\\\/\\}"
}

# The value of a number member in one line of the CLI's JSON output.
json_number() {
  local pattern="\"$1\": (-?[0-9.eE+-]+)"
  [[ $2 =~ $pattern ]] || return 1
  printf '%s' "${BASH_REMATCH[1]}"
}

# Display names of the built-in gestures, as the catalog gives them.
declare -A names
while IFS= read -r line; do
  id="$(json_string id "$line")" && names[$id]="$(json_string name "$line")"
done < <("$cli" gestures)

shopt -s nullglob
total=0
matching=0
for recording in "$root"/examples/*.jsonl; do
  total=$((total + 1))
  description=""
  expected=()
  while IFS= read -r line; do
    case "$line" in
      "# expect: "*) expected+=("${line#"# expect: "}") ;;
      "# "*) [ -z "$description" ] && [ ${#expected[@]} -eq 0 ] && description="${line#"# "}" ;;
      "#"* | "") ;;
      *) break ;;  # the header ends where the events begin
    esac
  done <"$recording"

  echo
  echo "== $(basename "$recording")"
  echo "   $description"

  custom=()
  shapes="${recording%.jsonl}.shapes.json"
  [ -f "$shapes" ] && custom=(--custom "$shapes")
  if ! output="$("$cli" replay "$recording" "${custom[@]}")"; then
    echo "   MISMATCH: the replay failed"
    continue
  fi

  recognized=()
  while IFS= read -r line; do
    id="$(json_string gesture "$line")" || continue
    recognized+=("$id")
    if [[ $id == *.custom.* ]]; then
      name="$(json_string name "$line" || true)"
      name="${name:-Custom gesture} (custom shape)"
    else
      name="${names[$id]:-Unknown gesture}"
    fi
    printf '   %8.3f s  %-44s %s\n' "$(json_number t "$line")" "$name" "$id"
  done <<<"$output"
  [ ${#recognized[@]} -eq 0 ] && echo "   (nothing recognized)"

  if [ "${recognized[*]}" = "${expected[*]}" ]; then
    matching=$((matching + 1))
    echo "   ok: as expected"
  else
    echo "   MISMATCH: expected ${expected[*]:-nothing}"
  fi
done

echo
echo "$matching of $total recordings recognized as expected."
[ "$matching" -eq "$total" ]
