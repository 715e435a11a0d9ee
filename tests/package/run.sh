#!/usr/bin/env bash
# Makes the Debian package of a build, looks into it, installs it with its dependencies in a bare Debian 12, plays the
# demonstration there, tries its services and removes it again. Needs root. Prints "ok NAME" or "not ok NAME" for each check.
#
#   tests/package/run.sh BUILD
#
# The bare Debian and the packages that were fetched are kept in build/bare-debian for the next time.
set -uo pipefail
build=$(realpath "${1:?the build folder}")
kept=$(dirname "$build")/bare-debian
work=$(mktemp -d)
root=$work/root
failed=0

tidy_up() {
  rm -rf "$work"
}
trap tidy_up EXIT

check() {
  local name=$1
  shift
  if "$@" >"$work/said" 2>&1; then
    echo "ok package: $name"
  else
    echo "not ok package: $name"
    tail -n 30 "$work/said" | sed 's/^/  /'
    failed=1
  fi
}

# A command inside the bare Debian, with a /proc of its own that is gone with the command.
inside() {
  unshare --mount --pid --fork sh -c '
    mount --bind "$1" "$0/var/cache/apt/archives" && mount -t proc proc "$0/proc" && shift &&
      exec chroot "$0" "$@"' "$root" "$kept/archives" "$@"
}

as_player() {
  inside runuser -u player -- env HOME=/home/player LC_ALL=C.UTF-8 "$@"
}

make_package() {
  rm -f "$work"/*.deb
  (cd "$build" && cpack -G DEB -B "$work/packages") && package=$(echo "$work"/packages/*.deb) && [ -f "$package" ]
}

holds() {
  local name listed
  listed=$(dpkg-deb --fsys-tarfile "$package" | tar -t)
  for name in bin/VexMonitor bin/vexctl bin/VexPostInstall bin/vextray bin/vexmonitor-demo \
    share/man/man1/vexctl.1.gz share/man/man1/VexMonitor.1.gz share/man/man1/VexPostInstall.1.gz \
    share/man/man1/vextray.1.gz share/bash-completion/completions/vexctl lib/systemd/user/vexmonitor.service \
    lib/systemd/user/vextray.service share/doc/vexmonitor/copyright share/doc/vexmonitor/changelog.Debian.gz \
    share/vexmonitor/demo/play.py; do
    grep -qx "./usr/$name" <<<"$listed" || { echo "there is no /usr/$name in:"; echo "$listed"; return 1; }
  done
  dpkg-deb -f "$package" Depends | grep -q libmpv2
}

unpack_debian() {
  mkdir -p "$kept/archives/partial" "$root"
  if [ ! -s "$kept/root.tar" ]; then
    mmdebstrap --mode=root --variant=apt bookworm "$kept/new.tar" && mv "$kept/new.tar" "$kept/root.tar" || return 1
  fi
  tar -C "$root" -xf "$kept/root.tar" && cp /etc/resolv.conf "$root/etc/resolv.conf" &&
    echo 'APT::Keep-Downloaded-Packages "true";' >"$root/etc/apt/apt.conf.d/99keep" &&
    chroot "$root" useradd --create-home player && inside apt-get -q update
}

install_package() {
  cp "$package" "$root/root/vexmonitor.deb"
  find "$root" -xdev -path "$root/proc" -prune -o -print | sort >"$work/before"
  inside env DEBIAN_FRONTEND=noninteractive apt-get -qy install --no-install-recommends /root/vexmonitor.deb python3
}

demonstrate() {
  as_player vexmonitor-demo --seconds 15 && as_player vexctl --help && ! as_player vexctl status
}

complete_words() {
  as_player bash -c '. /usr/share/bash-completion/completions/vexctl
    COMP_WORDS=(vexctl doc); COMP_CWORD=1; _vexctl; [ "${COMPREPLY[*]}" = doctor ]'
}

units_are_sound() {
  mkdir -p "$work/session"
  XDG_RUNTIME_DIR=$work/session systemd-analyze --user --root="$root" --man=no verify vexmonitor.service 2>&1 |
    tee "$work/units" >&2
  ! grep -E 'vexmonitor.service:' "$work/units"
}

with_systemd() {
  inside env DEBIAN_FRONTEND=noninteractive apt-get -qy install --no-install-recommends systemd-sysv \
    dbus-user-session libpam-systemd
}

remove_package() {
  inside env DEBIAN_FRONTEND=noninteractive apt-get -qy purge vexmonitor || return 1
  local left
  left=$(find "$root" -xdev -iname '*vexmonitor*' ! -path "$root/proc/*" ! -name vexmonitor.deb ! -path '*/tmp/*' \
    ! -path "$root/home/*")
  [ -z "$left" ] || { echo "left behind: $left"; return 1; }
  [ ! -e "$root/usr/bin/vexctl" ]
}

check "is made" make_package
[ "$failed" -eq 0 ] || exit 1
check "pleases lintian" lintian --fail-on error --allow-root "$package"
check "holds programs, manual, completion, service, demonstration" holds
check "a bare Debian 12 is at hand" unpack_debian
check "installs there with what it depends on" install_package
check "plays the demonstration there" demonstrate
check "completes commands in bash" complete_words
check "brings a unit that systemd takes" units_are_sound
check "a systemd joins it" with_systemd
"$(dirname "$0")/services.sh" "$root" || failed=1
check "is removed without leavings" remove_package
exit "$failed"
