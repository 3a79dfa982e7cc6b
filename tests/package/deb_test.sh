#!/usr/bin/env bash
# The Debian package of this build: made by CPack with its dependencies
# computed, named as Debian names packages, holding every installed file
# under /usr, and the cwreport unpacked from it (dpkg-deb -x into a scratch
# root) makes the same reports of the demo office as the build tree's.
#   deb_test.sh SOURCE_DIR BUILD_DIR PROJECT_VERSION
set -euo pipefail
source_dir=$1
build=$2
version=$3
for tool in cpack dpkg-deb dpkg-shlibdeps; do
  if ! command -v "$tool" >/dev/null; then
    echo "skipped: $tool is not installed (scripts/setup-deps.sh installs it)"
    exit 77
  fi
done

scratch=$(mktemp -d "${TMPDIR:-/tmp}/cw-deb-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
fail() { echo "FAIL: $*"; exit 1; }

cpack --config "$build/CPackConfig.cmake" -G DEB -B "$scratch/out" >"$scratch/cpack.log" 2>&1 ||
  { cat "$scratch/cpack.log"; fail "cpack did not make the package"; }
deb=$scratch/out/callwarden-reports_${version}_$(dpkg --print-architecture).deb
[ -f "$deb" ] || fail "no $(basename "$deb"); CPack wrote: $(ls "$scratch/out")"

# Depends: the fonts, and the libraries found by dpkg-shlibdeps.
depends=$(dpkg-deb -f "$deb" Depends)
for package in fonts-liberation2 libqt6core6 libqt6gui6 libqt6printsupport6 libc6; do
  [[ ", $depends," == *", $package "* || ", $depends," == *", $package,"* ]] ||
    fail "Depends lacks $package: $depends"
done

# lintian's errors and warnings; its notes are explained in README.md. (This
# build is not made with Debian's hardening flags: ./cw package is, and the
# notes about them appear here only.)
if command -v lintian >/dev/null; then
  lintian --fail-on error,warning "$deb" >"$scratch/lintian.log" 2>&1 ||
    { grep -v "root privileges" "$scratch/lintian.log"; fail "lintian reports errors or warnings"; }
else
  echo "lintian is not installed: the package is not checked by it"
fi

root=$scratch/root
dpkg-deb -x "$deb" "$root"
for file in usr/bin/cwreport usr/bin/callwarden-reports \
  usr/share/callwarden-reports/help/index.html \
  usr/share/applications/callwarden-reports.desktop \
  usr/share/icons/hicolor/scalable/apps/callwarden-reports.svg \
  usr/share/icons/hicolor/64x64/apps/callwarden-reports.png \
  usr/share/metainfo/org.callwarden.reports.metainfo.xml \
  usr/share/man/man1/cwreport.1.gz usr/share/man/man1/callwarden-reports.1.gz \
  usr/share/bash-completion/completions/cwreport \
  usr/share/doc/callwarden-reports/copyright usr/share/doc/callwarden-reports/changelog.gz; do
  [ -f "$root/$file" ] || fail "the package has no /$file"
done
# A new project version needs its entry in data/debian/changelog.
zcat "$root/usr/share/doc/callwarden-reports/changelog.gz" | head -1 | grep -q "^callwarden-reports ($version)" ||
  fail "data/debian/changelog does not start with an entry for $version"
outside=$(cd "$root" && find . -mindepth 1 -maxdepth 1 ! -name usr)
[ -z "$outside" ] || fail "the package puts files outside /usr: $outside"
# The installed program finds its help by the path from its folder.
cmp -s "$root/usr/share/callwarden-reports/help/index.html" "$source_dir/docs/help/index.html" ||
  fail "the packaged help is not docs/help/index.html"

unpacked=$root/usr/bin/cwreport
built=$build/src/cli/cwreport
[ "$("$unpacked" --version)" = "$("$built" --version)" ] || fail "the unpacked cwreport tells another version"

# The same requests through both programs, each on its own copy of the demo
# office (a report writes its chart into the office folder, and a request
# stores its choices in the settings file).
run() {  # run PROGRAM NAME OPTIONS...
  local program=$1 name=$2
  shift 2
  local office=$scratch/office-$name
  rm -rf "$office"
  cp -r "$source_dir/examples/demo" "$office"
  "$program" --settings "$office/settings.ini" --path "$office" --log "$office/CallLog.txt" \
    --today 11/13/2026 --period all "$@" --text -
}
compared=0
while read -r name options; do
  # shellcheck disable=SC2086
  run "$built" "$name" $options >"$scratch/$name.built.txt" || fail "the build's cwreport failed on $name"
  # shellcheck disable=SC2086
  run "$unpacked" "$name" $options >"$scratch/$name.unpacked.txt" || fail "the unpacked cwreport failed on $name"
  [ -s "$scratch/$name.built.txt" ] || fail "no text for $name"
  cmp "$scratch/$name.built.txt" "$scratch/$name.unpacked.txt" ||
    fail "the unpacked cwreport's $name differs from the build tree's"
  compared=$((compared + 1))
done <<'REQUESTS'
daily      --report daily --chart
line-usage --report line-usage --chart
busy       --report busy --variant Summary --chart
abandoned  --report abandoned --direction In --unanswered --rings 4
by-name    --report name --search smith --partial
history    --report history
by-line    --report line --lines all
REQUESTS
echo "the unpacked cwreport wrote the same $compared reports as the build tree's"
