#!/usr/bin/env bash
# Installs Ostrelle for the user who runs it:
#   - builds ostrelle-cli and the desktop application ostrelle (Release) and copies them to
#     PREFIX/bin (default ~/.local/bin);
#   - a udev rule (with sudo) that lets the user logged in at the seat read touchpads and use
#     /dev/uinput, without the "input" group that would open every keyboard to every program;
#   - a systemd user unit that runs `ostrelle-cli run` from login on and restarts it on failure;
#   - a desktop entry that opens the application (it takes over from the service while it runs).
# Says what it did. Options: --prefix DIR, --no-system (leave out the udev rule and systemctl,
# for containers and trial runs), --uninstall (removes what an install put in place).
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
prefix="$HOME/.local"
system=1
uninstall=0
while [ $# -gt 0 ]; do
  case "$1" in
    --prefix) prefix="${2:?--prefix needs a folder}"; shift 2 ;;
    --no-system) system=0; shift ;;
    --uninstall) uninstall=1; shift ;;
    -h | --help) sed -n '2,10p' "$0" | sed 's/^# \{0,1\}//'; exit 0 ;;
    *) echo "install.sh: unknown option $1" >&2; exit 2 ;;
  esac
done

bin="$prefix/bin/ostrelle-cli"
app="$prefix/bin/ostrelle"
rule=/etc/udev/rules.d/70-ostrelle.rules
unit="${XDG_CONFIG_HOME:-$HOME/.config}/systemd/user/ostrelle.service"
entry="${XDG_DATA_HOME:-$HOME/.local/share}/applications/ostrelle.desktop"
sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
has_user_systemd() { [ $system -eq 1 ] && command -v systemctl >/dev/null && systemctl --user show-environment >/dev/null 2>&1; }
reload_udev() {
  if command -v udevadm >/dev/null && [ -d /run/udev ]; then
    $sudo udevadm control --reload-rules
    $sudo udevadm trigger --subsystem-match=input --subsystem-match=misc
  fi
}

if [ $uninstall -eq 1 ]; then
  if has_user_systemd; then
    systemctl --user disable --now ostrelle.service 2>/dev/null || true
  fi
  rm -f "$unit" "$entry" "$bin" "$app"
  has_user_systemd && systemctl --user daemon-reload
  if [ $system -eq 1 ] && [ -e "$rule" ]; then
    $sudo rm -f "$rule"
    reload_udev
  fi
  echo "Removed $bin, $app, $unit, $entry$([ $system -eq 1 ] && echo " and $rule")."
  echo "Your bindings and settings stay in ${XDG_CONFIG_HOME:-$HOME/.config}/Ostrelle."
  exit 0
fi

"$root/scripts/install-deps.sh"
OSTRELLE_BUILD_TARGET="ostrelle-cli ostrelle" "$root/scripts/build.sh" "$root/build-install" \
  -DCMAKE_BUILD_TYPE=Release -DOSTRELLE_TESTS=OFF -DOSTRELLE_BENCH=OFF
install -Dm755 "$root/build-install/ostrelle-cli" "$bin"
install -Dm755 "$root/build-install/ostrelle" "$app"
echo "Installed the programs: $bin and $app"

mkdir -p "$(dirname "$unit")" "$(dirname "$entry")"
sed "s|@BINDIR@|$prefix/bin|g" "$root/packaging/linux/ostrelle.service" >"$unit"
sed "s|@BINDIR@|$prefix/bin|g" "$root/packaging/linux/ostrelle.desktop" >"$entry"
echo "Installed the service unit: $unit"
echo "Installed the desktop entry: $entry"

if [ $system -eq 1 ]; then
  $sudo install -Dm644 "$root/packaging/linux/70-ostrelle.rules" "$rule"
  reload_udev
  echo "Installed the udev rule: $rule (touchpads and /dev/uinput for the logged-in user)"
fi

if has_user_systemd; then
  systemctl --user daemon-reload
  systemctl --user enable ostrelle.service >/dev/null 2>&1
  systemctl --user restart ostrelle.service
  echo "Started the service; it starts again at every login (systemctl --user status ostrelle)."
else
  echo "No systemd user session here: start it yourself with $bin run"
fi
case ":$PATH:" in
  *":$prefix/bin:"*) ;;
  *) echo "Note: $prefix/bin is not in your PATH; add it to use ostrelle-cli by name." ;;
esac
