#!/usr/bin/env bash
# The main job on the bundled demo office.
set -euo pipefail
build=${1:-build}
root=$(cd "$(dirname "$0")/.." && pwd)
demo=$root/examples/demo
"$build/src/cli/cwreport" --settings "$demo/settings.ini" --path "$demo" --log "$demo/CallLog.txt"
