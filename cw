#!/usr/bin/env bash
# The project's two set-up commands (and a few more for developers):
#   ./cw run    install what is missing, build, produce the demo office's output
#   ./cw test   install what is missing, build, run every test (and again under
#               AddressSanitizer + UndefinedBehaviorSanitizer)
#   ./cw build  build only;  ./cw bench  build and run the benchmarks
#   ./cw package  build the Debian package build-package/callwarden-reports_<version>_<arch>.deb
#               (with Debian's hardening flags) and check it with lintian
#   ./cw fuzz [SECONDS]  build the fuzz targets with clang and run each for
#               SECONDS (default 60) under ASan + UBSan; crash inputs are kept
#               under tests/fuzz/crashes/<target>/
set -euo pipefail
cd "$(dirname "$0")"
root=$PWD
jobs=$(nproc)

build() {  # build DIR [cmake args...]
  local dir=$1; shift
  cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
  cmake --build "$dir" -j "$jobs"
}

# The fuzz targets: clang, the core without Qt, every library instrumented.
fuzz_build() {
  build build-fuzz -DCMAKE_CXX_COMPILER=clang++-16 -DCW_WITH_QT=OFF -DCW_FUZZ=ON \
    -DCW_BUILD_TESTS=OFF -DCW_BUILD_BENCH=OFF
}

case "${1:-run}" in
  run)
    scripts/setup-deps.sh
    build build
    scripts/run-demo.sh "$root/build"
    ;;
  test)
    scripts/setup-deps.sh
    build build
    # The printing tests print into a CUPS PDF queue; without one they are skipped.
    scripts/start-cups-pdf.sh || echo "cw: the printing tests will be skipped" >&2
    (cd build && QT_QPA_PLATFORM=offscreen ctest --output-on-failure -j "$jobs")
    build build-asan -DCW_SANITIZE=ON -DCW_BUILD_BENCH=OFF
    (cd build-asan && QT_QPA_PLATFORM=offscreen ASAN_OPTIONS=detect_leaks=0 \
       UBSAN_OPTIONS=print_stacktrace=1 ctest --output-on-failure -j "$jobs")
    # Every fuzz target for 20 s from its seeds; nothing is written into the repo.
    fuzz_build
    scripts/run-fuzz.sh build-fuzz 20 check
    ;;
  fuzz)
    scripts/setup-deps.sh
    fuzz_build
    scripts/run-fuzz.sh build-fuzz "${2:-60}" keep
    ;;
  build)
    scripts/setup-deps.sh
    build build
    ;;
  package)
    scripts/setup-deps.sh
    scripts/build-package.sh
    ;;
  bench)
    scripts/setup-deps.sh
    build build -DCMAKE_BUILD_TYPE=Release
    scripts/run-bench.sh "$root/build" "${@:2}"
    ;;
  *)
    echo "usage: ./cw run|test|build|package|bench|fuzz [SECONDS]" >&2
    exit 2
    ;;
esac
