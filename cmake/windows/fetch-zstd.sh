#!/usr/bin/env bash
# Lays the sources of zstd as Debian 12 has them, checked against its signed index, in build/sources/zstd.
# This machine's own package lists are not touched; root is not needed.
set -euo pipefail
sources=$(cd "$(dirname "$0")/../.." && pwd)/build/sources
[ -e "$sources/zstd/lib/zstd.h" ] && exit 0

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/lists/partial" "$work/cache/archives/partial"
echo "deb-src [signed-by=/usr/share/keyrings/debian-archive-keyring.gpg] http://deb.debian.org/debian bookworm main" \
  >"$work/sources.list"
apt=(apt-get -q -o Dir::Etc::SourceList="$work/sources.list" -o Dir::Etc::SourceParts=/dev/null
  -o Dir::State::Lists="$work/lists" -o Dir::Cache="$work/cache" -o APT::Sandbox::User="$(id -un)")
cd "$work"
if ! { "${apt[@]}" update && "${apt[@]}" source --download-only libzstd; } >log 2>&1; then
  cat log >&2
  echo "the sources of zstd cannot be fetched from deb.debian.org" >&2
  exit 1
fi
mkdir -p "$sources/zstd.new"
tar -xf libzstd_*.orig.tar.xz --strip-components=1 -C "$sources/zstd.new" --wildcards '*/lib/*'
rm -rf "$sources/zstd"
mv "$sources/zstd.new" "$sources/zstd"
