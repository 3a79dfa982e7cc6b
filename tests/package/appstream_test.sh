#!/usr/bin/env bash
# The AppStream metadata as an installation lays it out, beside the desktop
# entry and icons it refers to, valid by appstreamcli (pedantic hints too);
# and the project's version is among its releases.
#   appstream_test.sh BUILD_DIR PROJECT_VERSION
set -euo pipefail
build=$1
version=$2
if ! command -v appstreamcli >/dev/null; then
  echo "skipped: appstreamcli is not installed (Debian package appstream)"
  exit 77
fi
root=$(mktemp -d "${TMPDIR:-/tmp}/cw-appstream-XXXXXX")
trap 'rm -rf "$root"' EXIT
cmake --install "$build" --prefix "$root/usr" >/dev/null
metainfo=("$root"/usr/share/metainfo/*.metainfo.xml)
[ -f "${metainfo[0]}" ] || { echo "no metainfo file is installed"; exit 1; }
appstreamcli validate-tree --no-net --pedantic "$root"
if ! grep -q "<release version=\"$version\"" "${metainfo[0]}"; then
  echo "$(basename "${metainfo[0]}") has no <release version=\"$version\">: add the release"
  exit 1
fi
