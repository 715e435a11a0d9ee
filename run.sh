#!/usr/bin/env bash
# Installs what is missing, builds, and plays the demonstration show.
set -euo pipefail
cd "$(dirname "$0")"

usage="usage: ./run.sh [--seconds N]

Installs what is missing, builds the programs into build/release, and plays a demonstration of about a minute:
a weekly schedule whose show is in force now, with background, startup, animations, songs, clean-up, delay and
shutdown. Lights go out as E1.31 packets to 127.0.0.1 and come back as a picture in this terminal; the key b rings
at the door, and the lights answer. Without a terminal, status lines and counts are printed, and the door is rung
once. Ctrl-C ends the show gracefully, a second one at once.

  --seconds N   the show event ends N seconds from the player's start (default 40, at least 15)
  --help        this text"

seconds=40
while [ $# -gt 0 ]; do
  case $1 in
    --help) echo "$usage"; exit 0 ;;
    --seconds) seconds=${2:-}; shift 2 || { echo "$usage" >&2; exit 2; } ;;
    *) echo "$usage" >&2; exit 2 ;;
  esac
done
[[ $seconds =~ ^[0-9]{1,6}$ ]] && [ "$((10#$seconds))" -ge 15 ] ||
  { echo "run.sh: --seconds wants a whole number from 15 on" >&2; exit 2; }

cmake/install-packages.sh build
command -v ccache >/dev/null && export CMAKE_CXX_COMPILER_LAUNCHER=ccache
mkdir -p build
echo "Building; the first time takes some minutes (build/run-build.txt tells more)."
if ! { cmake --preset release -DVEX_TESTS=OFF -DVEX_BENCH=OFF &&
       cmake --build --preset release --target VexMonitor vexctl VexPostInstall lightview; } >build/run-build.txt 2>&1
then
  tail -n 40 build/run-build.txt >&2
  echo "run.sh: the build failed; all of it is in build/run-build.txt" >&2
  exit 1
fi
exec python3 -B demo/play.py build/release/bin build/demo --seconds "$((10#$seconds))"
