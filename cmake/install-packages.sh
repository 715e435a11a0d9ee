#!/usr/bin/env bash
# Installs the Debian packages that are missing: those for building and playing, with "test" also those
# for the tests, with "windows" those for building the Windows programs and trying them. Needs root or sudo only
# when something is missing.
set -euo pipefail

build=(g++ cmake ninja-build pkg-config nlohmann-json3-dev libcli11-dev zlib1g-dev libzstd-dev libmpv-dev liblo-dev python3
  libcpp-httplib-dev libsodium-dev)
test=(libgtest-dev libgmock-dev librapidcheck-dev libbenchmark-dev rapidjson-dev clang-14 clang-format-14
  clang-tidy-14 libclang-rt-14-dev git tshark liblo-tools xvfb openbox wmctrl x11-utils x11-apps chromium
  libsystemd-dev dpkg-dev file lintian mmdebstrap man-db systemd systemd-container)

windows=(g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix libz-mingw-w64-dev googletest wine wine64
  gstreamer1.0-plugins-base gstreamer1.0-plugins-good mmdebstrap arch-test locales)

wanted=("${build[@]}")
case ${1:-build} in
  test)
    wanted+=("${test[@]}")
    # The page's tests run on Node.js, the distribution's where the machine has none of its own.
    command -v node >/dev/null && command -v npm >/dev/null || wanted+=(nodejs npm)
    ;;
  windows) wanted+=("${windows[@]}") ;;
esac

missing=()
for package in "${wanted[@]}"; do
  dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null | grep -qx installed || missing+=("$package")
done
[ ${#missing[@]} -eq 0 ] && exit 0

as_root=()
if [ "$(id -u)" -ne 0 ]; then
  command -v sudo >/dev/null || { echo "missing: ${missing[*]}; install them as root, or install sudo" >&2; exit 1; }
  as_root=(sudo)
fi
echo "installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
"${as_root[@]}" apt-get -o DPkg::Lock::Timeout=300 -q update
"${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=300 -qy \
  --no-install-recommends install "${missing[@]}"
