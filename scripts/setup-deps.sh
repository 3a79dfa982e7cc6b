#!/usr/bin/env bash
# Installs the Debian 12 packages the project needs, only those that are missing.
set -euo pipefail

packages=(
  # build
  cmake ninja-build g++ pkg-config
  # fuzzing (./cw fuzz, ./cw test): clang 16 is the first Debian 12 clang that
  # compiles std::source_location; the libFuzzer runtime comes on its own
  clang-16 libclang-rt-16-dev
  libgtest-dev libgmock-dev libbenchmark-dev
  qt6-base-dev qt6-charts-dev libgl-dev
  # Qt Charts finds its OpenGL module through these files, which qt6-base-dev
  # only recommends
  libqt6opengl6-dev
  # whether a printer queue accepts jobs is asked of CUPS itself
  libcups2-dev
  # the embedded report form watches its host's X11 window
  libxcb1-dev
  # fonts measured and embedded in reports (Arial / Times New Roman metrics)
  fonts-liberation2 fontconfig
  # tests and benchmarks: PDF text read-back, awk comparison, a display for GUI runs
  poppler-utils mawk xvfb xauth
  # printing tests: a CUPS scheduler with a PDF queue (scripts/start-cups-pdf.sh)
  cups cups-client printer-driver-cups-pdf
  # packaging (./cw package and its tests): the .deb's library dependencies
  # (dpkg-shlibdeps) and build flags, its checks, and the AppStream validator
  dpkg-dev lintian appstream
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done
[ ${#missing[@]} -eq 0 ] && exit 0

echo "cw: installing ${missing[*]}" >&2
sudo_cmd=()
[ "$(id -u)" -eq 0 ] || sudo_cmd=(sudo)
export DEBIAN_FRONTEND=noninteractive
"${sudo_cmd[@]}" apt-get update -qq
"${sudo_cmd[@]}" apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
