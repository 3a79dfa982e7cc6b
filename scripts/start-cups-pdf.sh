#!/usr/bin/env bash
# A CUPS queue that prints into PDF files, for the printing tests: starts the
# CUPS scheduler when it is not running (straight as a daemon: there is no
# service manager in CI), adds the cups-pdf queue CW_PDF when it is missing,
# and says where its PDFs land. Run as root, or as a user who may use sudo.
# Exit status 0 when the queue is ready, 1 (with the reason) when not.
#   CW_CUPS_PDF_QUEUE  the queue's name (default CW_PDF); the tests read it too
set -euo pipefail

queue=${CW_CUPS_PDF_QUEUE:-CW_PDF}
as_root=()
[ "$(id -u)" -eq 0 ] || as_root=(sudo -n)

fail() { echo "cw: no CUPS PDF queue: $*" >&2; exit 1; }

for tool in cupsd lpstat lpadmin cupsenable cupsaccept; do
  command -v "$tool" >/dev/null 2>&1 || [ -x "/usr/sbin/$tool" ] ||
    fail "$tool is missing (scripts/setup-deps.sh installs cups, cups-client and printer-driver-cups-pdf)"
done
PATH=$PATH:/usr/sbin
[ -x /usr/lib/cups/backend/cups-pdf ] || fail "the cups-pdf backend is missing (package printer-driver-cups-pdf)"

scheduler_running() { lpstat -r 2>/dev/null | grep -q "scheduler is running"; }

if ! scheduler_running; then
  "${as_root[@]}" cupsd || fail "cupsd would not start (see /var/log/cups/error_log)"
  for _ in $(seq 1 50); do
    scheduler_running && break
    sleep 0.2
  done
  scheduler_running || fail "cupsd started but does not answer (see /var/log/cups/error_log)"
fi

if ! lpstat -v "$queue" >/dev/null 2>&1; then
  # The driver of the Debian package; else whatever cups-pdf driver CUPS lists.
  model=lsb/usr/cups-pdf/CUPS-PDF_opt.ppd
  if [ ! -f /usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd ]; then
    model=$(lpinfo -m 2>/dev/null | awk 'tolower($0) ~ /cups-pdf/ { print $1; exit }')
    [ -n "$model" ] || fail "CUPS lists no cups-pdf driver (lpinfo -m)"
  fi
  # lpadmin warns that drivers are deprecated; cups-pdf has no other way in.
  "${as_root[@]}" lpadmin -p "$queue" -E -v cups-pdf:/ -m "$model" 2>/dev/null ||
    fail "lpadmin could not add the queue $queue"
fi
"${as_root[@]}" cupsenable "$queue"
"${as_root[@]}" cupsaccept "$queue"

# cups-pdf writes each job to its "Out" folder, ${HOME} being the home of the
# user who printed.
out=$(awk '$1 == "Out" { $1 = ""; sub(/^ +/, ""); print; exit }' /etc/cups/cups-pdf.conf 2>/dev/null || true)
out=${out:-'${HOME}/PDF'}
echo "cw: CUPS queue $queue ready; its PDFs land in ${out//'${HOME}'/$HOME}" >&2
