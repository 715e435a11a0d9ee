#!/usr/bin/env bash
# Kills the player in the middle of a show, 100 times in a row, and measures how long each time until it is back in
# the show. A loop here stands in for the service manager: it starts the player anew 100 ms after its end, as the
# unit says (Restart=always, RestartSec=100ms).
#
#   tests/service/kill_100.sh PROGRAMS [TIMES]
#
# PROGRAMS is the folder with VexMonitor. Status 1 when a return took longer than 6 s.
set -euo pipefail
programs=$(realpath "${1:?the folder with VexMonitor}")
times=${2:-100}
folder=$(mktemp -d)
supervisor=

# Either process may have ended by itself by now, and the supervised one always ends badly: it is killed.
end() {
  touch "$folder/over"
  [ ! -s "$folder/pid" ] || kill -9 "$(cat "$folder/pid")" 2>/dev/null || true
  [ -z "$supervisor" ] || wait "$supervisor" || true
  rm -rf "$folder"
}
trap end EXIT

export VEX_SETTINGS=$folder/settings.reg VEX_RUNTIME_DIR=$folder/meet HOME=$folder
unset DISPLAY WAYLAND_DISPLAY NOTIFY_SOCKET
python3 - "$folder" <<'PYTHON'
import json, pathlib, sys
folder = pathlib.Path(sys.argv[1])
path = "Z:" + str(folder).replace("/", "\\\\")
key = r"[HKEY_CURRENT_USER\Software\Brillara"
folder.joinpath("settings.reg").write_text(
    f'Windows Registry Editor Version 5.00\n\n{key}]\n"UserDataPath"="{path}\\\\"\n\n{key}\\Shared]\n'
    f'"AudioPath"="{path}"\n"NonAudioPath"="{path}"\n\n{key}\\Output]\n"Protocol"="none"\n')
events = [{"kind": "main", "network": 0, "unit": 1, "circuit": 1, "start": 0, "from": 100, "to": 100}]
folder.joinpath("loop.vexseq").write_text(
    json.dumps({"format": "vexseq", "version": 1, "duration": 0.5, "events": events}))
folder.joinpath("all.shw").write_text("((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,,T,F,F),,"
                                      "(2,0,1,0,,(loop.vexseq),T,F,F),,0,,F)\r\n")
folder.joinpath("weeksched.qsc").write_text("((604799,2,(,0,all.shw),0))\r\n")
PYTHON

supervise() {
  while [ ! -e "$folder/over" ]; do
    "$programs/VexMonitor" >>"$folder/messages.txt" 2>&1 &
    echo $! >"$folder/pid"
    wait $! || true  # killed, as it is meant to be
    sleep 0.1
  done
}

# The process that plays, by its own word.
playing() {
  python3 - "$folder/meet/status.json" <<'PYTHON'
import json, sys
try:
    status = json.load(open(sys.argv[1]))
    print(status["pid"] if status["playing"] else "")
except (OSError, ValueError):
    print("")
PYTHON
}

# Waits until another process than that one plays.
wait_for_show() {
  local former=$1 pid
  for _ in $(seq 600); do
    pid=$(playing)
    [ -z "$pid" ] || [ "$pid" = "$former" ] || return 0
    sleep 0.02
  done
  echo "the player is not back after 12 s and more; it said:" >&2
  cat "$folder/messages.txt" >&2
  return 1
}

supervise 2>/dev/null &
supervisor=$!
wait_for_show none
for count in $(seq "$times"); do
  sleep "0.$((RANDOM % 10))"
  pid=$(playing)
  begin=$(date +%s%N)
  kill -9 "$pid"
  wait_for_show "$pid"
  echo $((($(date +%s%N) - begin) / 1000000))
  [ $((count % 10)) -ne 0 ] || echo "$count times" >&2
done >"$folder/times.txt"

python3 - "$folder/times.txt" <<'PYTHON'
import statistics, sys
times = [int(line) for line in open(sys.argv[1])]
late = sum(time > 6000 for time in times)
print(f"{len(times)} times killed: back in the show after {statistics.median(times):.0f} ms (median), "
      f"{min(times)} to {max(times)} ms, {late} later than 6 s")
sys.exit(1 if late else 0)
PYTHON
