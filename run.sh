#!/usr/bin/env bash
# Installs what is missing, builds, and plays the demonstration show.
set -euo pipefail
cd "$(dirname "$0")"

usage="usage: ./run.sh [--windows] [--seconds N]

Installs what is missing, builds the programs into build/release, and plays a demonstration of about a minute:
a weekly schedule whose show is in force now, with background, startup, animations, songs, clean-up, delay and
shutdown. Lights go out as E1.31 packets to this machine and come back as a picture in this terminal; the key b rings
at the door, and the lights answer. Without a terminal, status lines and counts are printed, and the door is rung
once. Ctrl-C ends the show gracefully, a second one at once.

  --windows     plays it with the Windows programs (64 bit) under Wine, in a Wine prefix of its own below
                build/wine: settings in its registry, songs through its media player control, lights and the
                picture as above
  --seconds N   the show event ends N seconds from the player's start (default 40, at least 15)
  --help        this text"

seconds=40
windows=
while [ $# -gt 0 ]; do
  case $1 in
    --help) echo "$usage"; exit 0 ;;
    --windows) windows=windows; shift ;;
    --seconds) seconds=${2:-}; shift 2 || { echo "$usage" >&2; exit 2; } ;;
    *) echo "$usage" >&2; exit 2 ;;
  esac
done
[[ $seconds =~ ^[0-9]{1,6}$ ]] && [ "$((10#$seconds))" -ge 15 ] ||
  { echo "run.sh: --seconds wants a whole number from 15 on" >&2; exit 2; }

# Keeps what the tools say and tells how far they are: on a terminal in one line, elsewhere at each quarter.
progress() {
  local what=$1 line quarter=0
  while IFS= read -r line; do
    echo "$line" >>build/run-build.txt
    [[ $line =~ ^\[([1-9][0-9]*)/([0-9]+)\] ]] || continue
    if [ -t 1 ]; then
      printf '\r  %s: %s of %s steps ' "$what" "${BASH_REMATCH[@]:1:2}"
    elif [ $((4 * BASH_REMATCH[1] / BASH_REMATCH[2])) -gt $quarter ]; then
      quarter=$((4 * BASH_REMATCH[1] / BASH_REMATCH[2]))
      printf '  %s: %s of %s steps\n' "$what" "${BASH_REMATCH[@]:1:2}"
    fi
  done
  [ ! -t 1 ] || printf '\n'
}

# Makes programs of a preset in a folder below build; where that fails, what the tools said last is shown.
build() {
  local what=$1 preset=$2 folder=$3
  shift 3
  if ! { cmake --preset "$preset" -B "build/$folder" -DVEX_TESTS=OFF -DVEX_BENCH=OFF &&
         cmake --build "build/$folder" --target "$@"; } 2>&1 | progress "$what"
  then
    tail -n 40 build/run-build.txt >&2
    echo "run.sh: the build failed; all of it is in build/run-build.txt" >&2
    exit 1
  fi
}

cmake/install-packages.sh "${windows:-build}"
command -v ccache >/dev/null && export CMAKE_CXX_COMPILER_LAUNCHER=ccache
mkdir -p build
: >build/run-build.txt
echo "Building; the first time takes some minutes (build/run-build.txt tells more)."
if [ "$windows" ]; then
  build "the viewer of the lights" release release lightview
  build "the Windows programs" windows-x86_64 windows-demo VexMonitor vexctl VexPostInstall
  exec python3 -B demo/play_windows.py build/windows-demo/bin build/demo-windows build/release/bin/lightview \
    --seconds "$((10#$seconds))"
fi
build "the programs" release release VexMonitor vexctl VexPostInstall lightview vextray
exec python3 -B demo/play.py build/release/bin build/demo --seconds "$((10#$seconds))"
