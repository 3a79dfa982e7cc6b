#!/usr/bin/env bash
# The Debian package (./cw package): a build of the programs alone with the
# compiler and linker flags Debian builds its packages with (dpkg-buildflags,
# all hardening on), packed by CPack into build-package/, then checked by
# lintian. What lintian still reports is explained in README.md ("Install").
set -euo pipefail
root=$(cd "$(dirname "$0")/.." && pwd)
build=$root/build-package
cd "$root"

export DEB_BUILD_MAINT_OPTIONS=hardening=+all
launcher=()
command -v ccache >/dev/null && launcher=(-DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "${launcher[@]}" \
  -DCW_BUILD_TESTS=OFF -DCW_BUILD_BENCH=OFF \
  -DCMAKE_CXX_FLAGS="$(dpkg-buildflags --get CPPFLAGS) $(dpkg-buildflags --get CXXFLAGS)" \
  -DCMAKE_EXE_LINKER_FLAGS="$(dpkg-buildflags --get LDFLAGS)" >/dev/null
cmake --build "$build" -j "$(nproc)"
rm -f "$build"/callwarden-reports_*.deb
(cd "$build" && cpack -G DEB >/dev/null)
deb=$(ls "$build"/callwarden-reports_*.deb)
echo "cw: $deb"
# Errors and warnings fail; the notes and the pedantic hints are shown.
lintian --info --display-info --pedantic --fail-on error,warning "$deb"
