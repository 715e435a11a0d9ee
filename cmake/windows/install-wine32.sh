#!/usr/bin/env bash
# Puts a 32-bit Wine, and what it plays media with, into a root folder of its own, build/wine/root32: about a
# minute and 1.1 GB, once for each list of packages. Debian 12 alone is asked for it; this machine's packages
# are not touched. Needs root or sudo.
set -euo pipefail
root=$(cd "$(dirname "$0")/../.." && pwd)/build/wine/root32
packages=wine32,wine,gstreamer1.0-plugins-base,gstreamer1.0-plugins-good
[ "$(cat "$root/ready" 2>/dev/null)" = "$packages" ] && exit 0

as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo -n)
echo "installing a 32-bit Wine in $root"
mkdir -p "$(dirname "$root")"
"${as_root[@]}" rm -rf --one-file-system "$root"
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if "${as_root[@]}" mmdebstrap --mode=root --arch=i386 --variant=apt --include="$packages" bookworm "$root" \
  "deb [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian bookworm main" \
  >"$log" 2>&1; then
  "${as_root[@]}" tee "$root/ready" <<<"$packages" >/dev/null
else
  tail -n 5 "$log" >&2
  echo "no 32-bit Wine: mmdebstrap failed; the 32-bit programs are built but not tried" >&2
fi
