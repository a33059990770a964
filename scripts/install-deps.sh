#!/usr/bin/env bash
# Installs the Debian packages the build and the tests need, only those that are missing.
# Safe to run again; works as root or through sudo.
set -euo pipefail

packages=(
  build-essential cmake ninja-build pkg-config
  clang libclang-rt-14-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  libfmt-dev nlohmann-json3-dev uuid-dev libutf8proc-dev
  libevdev-dev libmtdev-dev libudev-dev libsystemd-dev
  libx11-dev libxtst-dev libxkbcommon-dev libxkbcommon-x11-dev libx11-xcb-dev libglib2.0-dev libcanberra-dev
  xvfb x11-xkb-utils xkb-data xdotool
  dbus-daemon libglib2.0-bin
  qt6-base-dev qt6-svg-dev libqt6svg6 trayer
  qemu-system-x86 busybox-static cpio
  clang-format clang-tidy
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then
  sudo="sudo"
fi
echo "Installing: ${missing[*]}"
$sudo env DEBIAN_FRONTEND=noninteractive apt-get update -qq
$sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"
