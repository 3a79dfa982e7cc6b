#!/usr/bin/env bash
# The bash completion of cwreport, run against this build's program: each
# case is the words typed so far (the last one is the word being completed)
# and the replies expected, in order.
#   bash_completion_test.sh SOURCE_DIR CWREPORT
set -uo pipefail
source_dir=$1
cwreport=$2

scratch=$(mktemp -d "${TMPDIR:-/tmp}/cw-completion-XXXXXX")
trap 'rm -rf "$scratch"' EXIT
mkdir -p "$scratch/bin" "$scratch/office/reports"
touch "$scratch/office/CallLog.txt" "$scratch/office/Callwarden.ini" "$scratch/office/week.spl"
ln -s "$cwreport" "$scratch/bin/cwreport"
# The printers CUPS would name: one accepting jobs per line.
cat >"$scratch/bin/lpstat" <<'LPSTAT'
#!/bin/sh
[ "$1" = "-a" ] || exit 1
echo "CW_PDF accepting requests since Wed 25 Nov 2026 09:00:00"
echo "OfficeLaser accepting requests since Wed 25 Nov 2026 09:00:00"
LPSTAT
chmod +x "$scratch/bin/lpstat"
export PATH="$scratch/bin:$PATH"

# shellcheck source=/dev/null
source "$source_dir/data/bash-completion/cwreport"
complete -p cwreport >/dev/null || { echo "the completion is not registered for cwreport"; exit 1; }

failures=0
# expect "REPLIES" WORD... : completes the last WORD after the others.
expect() {
  local expected=${1//$'\n'/ }
  shift
  COMP_WORDS=(cwreport "$@")
  COMP_CWORD=$#
  COMPREPLY=()
  _cwreport
  # The replies as a set; "\ " is a blank within one expected reply.
  local -a wanted
  read -r -a wanted <<<"${expected//\\ /$'\x01'}"
  local -A got=()
  local reply same=1
  for reply in "${COMPREPLY[@]}"; do got[$reply]=1; done
  [[ ${#got[@]} -eq ${#COMPREPLY[@]} && ${#got[@]} -eq ${#wanted[@]} ]] || same=""
  for reply in "${wanted[@]}"; do
    [[ -n ${got[${reply//$'\x01'/\\ }]+set} ]] || same=""
  done
  if [[ -z $same ]]; then
    echo "FAIL: cwreport $*<TAB>"
    echo "  expected: $expected"
    echo "  got:      ${COMPREPLY[*]}"
    failures=$((failures + 1))
  fi
}

o=$scratch/office
cd "$o" || exit 1
subcommands=$("$cwreport" --help | awk '/^$/ { exit } { for (i = 1; i < NF; i++) if ($i == "cwreport" && $(i+1) ~ /^[a-z]/) print $(i+1) }')

expect "$subcommands"                          ""
expect "log-summary"                           lo
expect "--report"                              --rep
expect "--period --paper --partial --path --pdf --png --print" --p
expect "daily line-usage busy abandoned name number history line callbacks" --report ""
expect "line-usage line"                       --report li
expect "daily line-usage busy abandoned name number history line callbacks" --report = ""
expect "last-week last-month last-year"        --period last-
expect "In InOut"                              --direction In
expect 'Vorn\ Ringtally'                       --edition Vo
expect "CW_PDF OfficeLaser"                    --print ""
expect "OfficeLaser"                           --print Of
expect "--pdf"                                 --print --pd
expect "$o/CallLog.txt $o/Callwarden.ini"      --log "$o/Cal"
expect "$o/reports"                            --png "$o/"
expect "- CallLog.txt Callwarden.ini reports week.spl" --text ""
expect ""                                      --rings ""
expect ""                                      --chart --ch
expect "--to --today --to-page"                --from 1/1/2026 --to
expect "--log"                                 log-summary --lo
expect ""                                      log-summary --ch
expect "--settings"                            log-summary --today 1/1/2026 --se
expect "$o/week.spl"                           dump "$o/we"
expect "--dpi"                                 export "$o/week.spl" --d
expect "$subcommands"                          help ""
expect ""                                      help dump ""

# Every option of the report request's help is offered.
all=$("$cwreport" --help | awk '/^  --/ { print $1 }')
expect "$all" --

if [[ $failures -gt 0 ]]; then
  echo "$failures completion case(s) failed"
  exit 1
fi
echo "all completion cases passed"
