#!/usr/bin/env bash
# The main job on the bundled demo office: every report of the report form,
# both all-lines-busy variants, charts where a report has one, written as PDF
# and text into ./out/ under the project root. Then, when there is a display
# to show it on (and this is not a CI run), the desktop program opens on the
# same office; the script ends when its window is closed.
#
# The demo log runs from 08/17/2026 to 11/13/2026; its last day is taken for
# "today", so the period "all" is the whole log and the output is the same on
# every run.
set -euo pipefail
build=${1:-build}
root=$(cd "$(dirname "$0")/.." && pwd)
case $build in /*) ;; *) build=$root/$build ;; esac
demo=$root/examples/demo
out=$root/out
cwreport=$build/src/cli/cwreport
mkdir -p "$out"

# The settings file stays untouched: the abandoned-calls request stores its
# filter, so every run works on a copy.
settings=$(mktemp "${TMPDIR:-/tmp}/cw-demo-settings-XXXXXX")
trap 'rm -f "$settings"' EXIT
cp "$demo/settings.ini" "$settings"

common=(--settings "$settings" --path "$demo" --log "$demo/CallLog.txt" --today 11/13/2026 --period all)

report() {  # report NAME OPTIONS...
  local name=$1
  shift
  "$cwreport" "${common[@]}" "$@" --pdf "$out/$name.pdf" --text "$out/$name.txt"
  echo "  $name.pdf  $name.txt"
}

echo "Demo office reports (period Aug 17, 2026 to Nov 13, 2026):"
report 1-daily-call-analysis       --report daily --chart
report 2-line-usage                --report line-usage --chart
report 3-all-lines-busy-detailed   --report busy --variant Detailed
report 3-all-lines-busy-summary    --report busy --variant Summary --chart
report 4-abandoned-calls           --report abandoned --direction In --unanswered --rings 4
report 5-by-name                   --report name --search "smith" --partial
report 6-by-tel-number             --report number --search "5551234567"
report 7-call-history              --report history
report 7-call-history-condensed    --report history --chart
report 8-by-line-number            --report line --lines all
echo "Written to $out"

# An office whose PBX writes call detail records instead: the sample Asterisk
# CDR file (ring groups, transfers, voicemail, odd quoting, two rows no PBX
# should write) imported into a call log of its own, and reported on.
pbx=$root/examples/pbx/asterisk
pbx_log=$out/pbx-CallLog.txt
rm -f "$pbx_log" "$pbx_log.import"
echo "PBX import (examples/pbx/asterisk/Master.csv):"
"$cwreport" import --settings "$pbx/settings.ini" --cdr "$pbx/Master.csv" --log "$pbx_log"
"$cwreport" --settings "$settings" --path "$demo" --log "$pbx_log" --today 11/17/2026 --period all \
  --report history --direction InOut --pdf "$out/pbx-call-history.pdf" --text "$out/pbx-call-history.txt"
echo "  pbx-CallLog.txt  pbx-call-history.pdf  pbx-call-history.txt"

# The desktop program keeps its settings in the build folder, so that the
# form remembers the user's choices from one run to the next. "Path" and
# "Logs" must be full paths: they are pointed at this checkout's demo office
# on every run.
start_desktop() {
  local desktop=$build/src/app/callwarden-reports
  local desktop_settings=$build/demo-office-settings.ini
  if [ ! -x "$desktop" ]; then
    echo "The desktop program $desktop is not built; skipping it."
    return
  fi
  [ -f "$desktop_settings" ] || cp "$demo/settings.ini" "$desktop_settings"
  DEMO=$demo awk '/^Path=/ { print "Path=" ENVIRON["DEMO"]; next }
                  /^Logs=/ { print "Logs=" ENVIRON["DEMO"] "/CallLog.txt"; next }
                  { print }' "$desktop_settings" >"$desktop_settings.new"
  mv "$desktop_settings.new" "$desktop_settings"
  echo "Starting the desktop program on the demo office (close its window to finish)."
  CW_SETTINGS=$desktop_settings "$desktop"
}

if [ -z "${CI:-}" ] && { [ -n "${DISPLAY:-}" ] || [ -n "${WAYLAND_DISPLAY:-}" ]; }; then
  start_desktop
else
  echo "No display (or a CI run): the desktop program is not started."
fi
