#!/usr/bin/env bash
# Runs the device tests (tests/device) against a real Linux kernel: boots Debian's current kernel
# under qemu's software emulation with a small initramfs holding busybox, the evdev and uinput
# modules and the test programs, so touchpads can be created with uinput where the host has none.
# One boot runs every device test. kernel-tests.sh [gtest arguments...]
set -euo pipefail
root="$(cd "$(dirname "$0")/.." && pwd)"
"$root/scripts/install-deps.sh"

dir="$root/build"
cache="$dir/kernel-tests"
program=ostrelle_device_tests
# seconds for the whole boot; a boot takes about 10 s, more on a busy machine
boot_limit=240
marker="ostrelle-device-tests: exit status"

# The test program, in a Release build (the existing one's settings are kept).
configure=()
if [ ! -f "$dir/CMakeCache.txt" ]; then
  configure=(-DCMAKE_BUILD_TYPE=Release)
  if command -v ccache >/dev/null; then configure+=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache); fi
fi
OSTRELLE_BUILD_TARGET=$program "$root/scripts/build.sh" "$dir" "${configure[@]}"
# The tests also run the command line's `record` on a live touchpad.
cmake --build "$dir" --parallel "$(nproc)" --target ostrelle-cli
binary="$dir/tests/$program"
cli="$dir/ostrelle-cli"

# The kernel: whatever linux-image-amd64 currently depends on; old versions leave the archive.
kernel_package() {
  apt-cache depends linux-image-amd64 2>/dev/null | awk '/Depends: linux-image-[0-9]/ {print $2; exit}'
}
package="$(kernel_package)"
if [ -z "$package" ]; then
  sudo=""
  if [ "$(id -u)" -ne 0 ]; then sudo="sudo"; fi
  $sudo env DEBIAN_FRONTEND=noninteractive apt-get update -qq
  package="$(kernel_package)"
fi
if [ -z "$package" ]; then
  echo "kernel-tests: no linux-image-amd64 in the package lists" >&2
  exit 1
fi

kernel_dir="$cache/$package"
if [ ! -f "$kernel_dir/ready" ]; then
  echo "kernel-tests: fetching $package"
  rm -rf "$kernel_dir"
  mkdir -p "$kernel_dir"
  scratch="$(mktemp -d "$cache/unpack.XXXXXX")"
  (cd "$scratch" && apt-get download -q "$package" >/dev/null 2>&1) || {
    # apt runs the download as _apt, which may not write here; then fetch as ourselves
    (cd "$scratch" && apt-get download -q -o APT::Sandbox::User=root "$package" >/dev/null)
  }
  dpkg -x "$scratch"/*.deb "$scratch/root"
  cp "$scratch"/root/boot/vmlinuz-* "$kernel_dir/vmlinuz"
  for module in evdev uinput; do
    found="$(find "$scratch/root" -name "$module.ko*" | head -n 1)"
    case "$found" in
      *.ko) cp "$found" "$kernel_dir/$module.ko" ;;
      *.ko.xz) xz -dc "$found" >"$kernel_dir/$module.ko" ;;
      *.ko.zst) zstd -qdc "$found" >"$kernel_dir/$module.ko" ;;
      *) echo "kernel-tests: $package has no $module module" >&2; exit 1 ;;
    esac
  done
  # The bzImage's payload is the xz-compressed ELF kernel; booted directly (PVH), it saves the
  # seconds that decompressing takes under emulation.
  python3 - "$kernel_dir/vmlinuz" "$kernel_dir/vmlinux" <<'EOF' || echo "kernel-tests: booting the compressed kernel"
import lzma, struct, sys
image = open(sys.argv[1], "rb").read()
setup_sectors = image[0x1f1] or 4
offset, length = struct.unpack_from("<II", image, 0x248)
start = (setup_sectors + 1) * 512 + offset
payload = image[start:start + length]
if not payload.startswith(b"\xfd7zXZ\x00"):
    sys.exit(1)
kernel = lzma.LZMADecompressor().decompress(payload)
if not kernel.startswith(b"\x7fELF"):
    sys.exit(1)
open(sys.argv[2], "wb").write(kernel)
EOF
  rm -rf "$scratch"
  touch "$kernel_dir/ready"
fi
kernel="$kernel_dir/vmlinuz"
if [ -f "$kernel_dir/vmlinux" ]; then kernel="$kernel_dir/vmlinux"; fi

# The initramfs: busybox, the modules, the test program with its libraries and loader, the
# recordings it replays, and an /init that runs it and reports through a marker line.
stage="$cache/initramfs"
rm -rf "$stage"
mkdir -p "$stage"/{bin,modules,tests,proc,sys,dev,tmp}
cp "$(command -v busybox)" "$stage/bin/busybox"
cp "$kernel_dir/evdev.ko" "$kernel_dir/uinput.ko" "$stage/modules/"
cp "$binary" "$stage/tests/$program"
cp "$cli" "$stage/tests/ostrelle-cli"
if ldd "$binary" "$cli" | grep -q "not found"; then
  echo "kernel-tests: the programs miss libraries:" >&2
  ldd "$binary" "$cli" | grep "not found" >&2
  exit 1
fi
ldd "$binary" "$cli" | awk '/=> \// {print $3} /^[ \t]+\// {print $1}' | sort -u | while read -r library; do
  cp -L --parents "$library" "$stage/"
done
cp -r "$root/tests/recordings" "$stage/tests/recordings"
printf '%q ' "$@" >"$stage/tests/arguments"
cat >"$stage/init" <<EOF
#!/bin/busybox sh
/bin/busybox --install -s /bin
export PATH=/bin
mount -t proc proc /proc
mount -t sysfs sysfs /sys
mount -t devtmpfs devtmpfs /dev
insmod /modules/evdev.ko
insmod /modules/uinput.ko
mkdir -p /tmp/home /tmp/config /tmp/data /tmp/cache /tmp/state /tmp/runtime
chmod 700 /tmp/runtime
export HOME=/tmp/home XDG_CONFIG_HOME=/tmp/config XDG_DATA_HOME=/tmp/data XDG_CACHE_HOME=/tmp/cache
export XDG_STATE_HOME=/tmp/state XDG_RUNTIME_DIR=/tmp/runtime TMPDIR=/tmp
export OSTRELLE_RECORDINGS_DIR=/tests/recordings OSTRELLE_CLI=/tests/ostrelle-cli
eval "/tests/$program --gtest_color=no \$(cat /tests/arguments)"
echo "$marker \$?"
poweroff -f
EOF
chmod +x "$stage/init"
(cd "$stage" && find . -mindepth 1 | cpio -o -H newc -R 0:0 --quiet | gzip -1) >"$cache/initrd.gz"

echo "kernel-tests: booting $package"
started=$SECONDS
output="$cache/console.log"
status=0
timeout "$boot_limit" qemu-system-x86_64 -accel tcg -m 512 -smp 1 -nodefaults -display none \
  -monitor none -serial stdio -no-reboot -kernel "$kernel" -initrd "$cache/initrd.gz" \
  -append "console=ttyS0 quiet panic=-1" </dev/null >"$output" 2>&1 || status=$?
tr -d '\r' <"$output" | grep -v "^$marker" || true
echo "kernel-tests: boot took $((SECONDS - started)) s"
if [ "$status" -ne 0 ]; then
  echo "kernel-tests: qemu ended with status $status (124: over the ${boot_limit} s limit)" >&2
  exit 1
fi
result="$(tr -d '\r' <"$output" | sed -n "s/^$marker \([0-9]*\)$/\1/p" | tail -n 1)"
if [ -z "$result" ]; then
  echo "kernel-tests: the tests did not finish (no result line)" >&2
  exit 1
fi
if [ "$result" -ne 0 ]; then
  echo "kernel-tests: the device tests failed (status $result)" >&2
  exit 1
fi
echo "kernel-tests: the device tests passed"
