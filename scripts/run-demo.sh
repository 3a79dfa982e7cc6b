#!/usr/bin/env bash
# The main job on the bundled demo office. Until the reports exist this is the
# newest thing that works end to end: the demo log's oldest date and its calls
# per line, read with the call-log reader.
set -euo pipefail
build=${1:-build}
root=$(cd "$(dirname "$0")/.." && pwd)
demo=$root/examples/demo
"$build/src/cli/cwreport" log-summary --settings "$demo/settings.ini" --log "$demo/CallLog.txt"
