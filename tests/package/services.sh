#!/usr/bin/env bash
# Boots a Debian 12 in which the package is installed, with its own systemd and its own network, and tries the services
# there as a user would: enabled, playing, killed, stuck, stopped. Needs root. Prints "ok NAME" or "not ok NAME" for
# each check, or why the machine leaves them out.
#
#   tests/package/services.sh ROOT
#
# ROOT is the folder of that Debian, with systemd, dbus-user-session and an account "player".
set -uo pipefail
root=$(realpath "${1:?the folder of a Debian}")
work=$(mktemp -d)
machine= # the container's nspawn
init=    # its first process
failed=0

end() {
  [ -z "$init" ] || inside systemctl --no-block poweroff >/dev/null 2>&1
  for _ in $(seq 100); do [ -n "$machine" ] && kill -0 "$machine" 2>/dev/null || break; sleep 0.1; done
  [ -z "$machine" ] || kill -9 "$machine" 2>/dev/null
  rm -rf "$work"
}
trap end EXIT

inside() { nsenter --target "$init" --all "$@"; }

as_player() {
  inside runuser -u player -- env HOME=/home/player XDG_RUNTIME_DIR=/run/user/1000 LC_ALL=C.UTF-8 \
    DBUS_SESSION_BUS_ADDRESS=unix:path=/run/user/1000/bus "$@"
}

check() {
  local name=$1
  shift
  if "$@" >"$work/said" 2>&1; then
    echo "ok services: $name"
  else
    echo "not ok services: $name"
    { tail -n 20 "$work/said"; inside journalctl --no-pager --lines 40 _UID=1000; } | sed 's/^/  /'
    failed=1
  fi
}

# Tries a command until it succeeds, for a minute at most.
soon() {
  for _ in $(seq 300); do
    "$@" && return 0
    sleep 0.2
  done
  return 1
}

boot() {
  systemd-nspawn --quiet --directory "$root" --boot --register=no --keep-unit --console=passive --private-network \
    </dev/null >"$work/boot" 2>&1 &
  machine=$!
  for _ in $(seq 150); do
    init=$(pgrep -P "$machine") && inside systemctl is-system-running 2>/dev/null | grep -qE 'running|degraded' && return 0
    kill -0 "$machine" 2>/dev/null || break
    sleep 0.2
  done
  init=
  return 1
}

# A show that is on all week, on lights that are sent to this machine itself.
prepare() {
  cat >"$root/home/player/prepare.py" <<'PYTHON'
import json, pathlib
home = pathlib.Path.home()
shows, settings = home / "shows", home / ".config/vexmonitor"
for folder in (shows, settings):
    folder.mkdir(parents=True, exist_ok=True)
path = "Z:" + str(shows).replace("/", "\\\\")
key = r"[HKEY_CURRENT_USER\Software\Brillara"
(settings / "settings.reg").write_text(
    f'Windows Registry Editor Version 5.00\n\n{key}]\n"UserDataPath"="{path}\\\\"\n\n{key}\\Shared]\n'
    f'"AudioPath"="{path}"\n"NonAudioPath"="{path}"\n\n{key}\\Output]\n"Host"="127.0.0.1"\n')
events = [{"kind": "main", "network": 0, "unit": 1, "circuit": 1, "start": 0, "from": 100, "to": 100}]
(shows / "loop.vexseq").write_text(json.dumps({"format": "vexseq", "version": 1, "duration": 0.5, "events": events}))
(shows / "all.shw").write_text("((0,1,2,0,,,T,F,F),(0,1,2,0,,,T,F,F),(1,0,1,0,,,T,F,F),(0,1,2,0,,,T,F,F),,"
                               "(2,0,1,0,,(loop.vexseq),T,F,F),,0,,F)\r\n")
(shows / "weeksched.qsc").write_text("((604799,2,(,0,all.shw),0))\r\n")
PYTHON
  inside loginctl enable-linger player && soon inside systemctl --quiet is-active user@1000.service &&
    as_player python3 /home/player/prepare.py
}

enable() { as_player systemctl --user enable --now vexmonitor vextray; }

main_pid() { as_player systemctl --user show --property MainPID --value vexmonitor; }

# The process that plays, by its own word, when it is another than that one.
plays_anew() {
  local pid
  pid=$(main_pid)
  [ "$pid" != "$1" ] && as_player vexctl --json status 2>/dev/null |
    python3 -c 'import json, sys; s = json.load(sys.stdin); sys.exit(not (s["pid"] == int(sys.argv[1]) and s["playing"]))' "$pid"
}

status_line() { as_player systemctl --user show --property StatusText --value vexmonitor | grep '^Playing all.shw until '; }

in_health() {
  as_player python3 -c 'import sys, urllib.request
at = "http://127.0.0.1:8410/"
print(urllib.request.urlopen(at + "api/state", timeout=5).read().decode())
sys.exit(urllib.request.urlopen(at + "healthz", timeout=5).status != 200)'
}

comes_back_after() {
  local signal=$1 former
  former=$(main_pid)
  inside bash -c "kill -$signal $former" && soon plays_anew "$former" && soon status_line
}

stops() {
  as_player systemctl --user stop vexmonitor && [ "$(as_player systemctl --user is-active vexmonitor)" = inactive ] &&
    inside journalctl --no-pager --user-unit vexmonitor --lines 5 && ! inside pidof VexMonitor
}

if ! boot; then
  echo "services: left out, no systemd starts in a container here: $(tail -n 1 "$work/boot")"
  exit 0
fi
check "an account that plays is prepared" prepare
check "both are enabled and started" enable
check "the player plays" soon plays_anew 0
check "the service's status tells the show" soon status_line
check "the tray finds the machine in health" soon in_health
check "a killed player is back in the show" comes_back_after KILL
check "a stuck player is started anew" comes_back_after STOP
check "stop ends it and starts nothing anew" stops
exit "$failed"
