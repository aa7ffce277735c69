#!/bin/sh
# tour.sh BUILD WORK any|"" FMSIM-OPTION...: runs the tour: first calculations, then commands of the service. WORK is an
# empty folder.
set -u

build=$1
work=$2
any=$3
shift 3
scripts=$(dirname "$0")
failed=0

# The simulated FileMaker reads its lines from a pipe. A reader passes its output on and detects the mark.
mark="-- in step --"
mkfifo "$work/input"
{ "$build/fmsim" "$@" < "$work/input"; echo $? > "$work/status"; } |
  while IFS= read -r line; do
    if [ "$line" = "$mark" ]; then : > "$work/reached"; else printf '%s\n' "$line"; fi
  done &
reader=$!
exec 3> "$work/input"

# fmsim LINE...: sends lines to the simulated FileMaker and waits until it has carried them out.
fmsim() {
  printf '%s\n' "$@" ".say $mark" >&3
  until [ -e "$work/reached" ]; do
    if [ -e "$work/status" ]; then
      echo "The simulated FileMaker has ended." >&2
      exit 1
    fi
    sleep 0.05
  done
  rm "$work/reached"
}

say() { echo; echo "== $*"; }

# send STATUS EXPECTED WORD...: sends a command to the plug-in through the service. It must end with the exit status
# STATUS, and its result or error must contain EXPECTED.
send() {
  wanted=$1
  expected=$2
  shift 2
  echo "varnix-service send $*"
  status=0
  "$build/varnix-service" send "$@" --wait 45 > "$work/result" 2>&1 || status=$?
  size=$(wc -c < "$work/result")
  head -c 500 "$work/result" | LC_ALL=C sed 's/^/  /'  # the cut may divide a character, which that of macOS refuses
  [ "$size" -le 500 ] || printf ' ... (%s bytes)\n' "$size"
  if [ $status -ne "$wanted" ] || { [ -n "$expected" ] && ! grep -qF -e "$expected" "$work/result"; }; then
    echo "NOT OK  exit status $status; expected $wanted and: $expected" >&2
    failed=1
  fi
}

fmsim "Let ( [ \$\$service = \"$VARNIX_SERVICE\" ; \$\$key = \"$(cat "$VARNIX_DATA/key")\" ] ; \"\" )"
if [ -n "$any" ]; then
  fmsim "$(cat "$scripts/tour-any.txt")"
  send 0 "" list-files
else
  fmsim "$(cat "$scripts/tour.txt")"
  say "Signed in, the plug-in asks the service for commands every three seconds: here, for the open files"
  send 0 Timesheets list-files
  say "... for a report of what the plug-in sees"
  send 0 '"registered":true' debug-context
  say "... to put a table on FileMaker's clipboard, and to get it back"
  send 0 "" set-clipboard --xml-type XMTB --content samples/snippets/XMTB-parts-table.xml
  send 0 Mac-XMTB get-clipboard-formats
  send 0 "<BaseTable" get-clipboard --xml-type XMTB
  say "... for the design of a file, which its script Varnix Live Push saves and sends"
  send 0 "</FMSaveAsXML>" get-schema
  say "... of a file whose privilege set does not let plug-ins start scripts"
  fmsim ".activate Timesheets"
  send 1 "(FM error 825)" get-schema --file Timesheets
  say "... of a file without the script"
  sed 's/Varnix Live Push/Nightly Backup/g; s/File="Workshop.fmp12"/File="Scriptless.fmp12"/' \
    samples/Workshop.xml > "$work/Scriptless.xml"
  fmsim ".open $work/Scriptless.xml"
  send 1 "script not found" get-schema --file Scriptless
  say "What the service has stored about it"
  "$build/varnix-service" list || failed=1
  schema=$("$build/varnix-service" list | awk '$2 == "get-schema" { print $1; exit }')
  "$build/varnix-service" show "$schema" | tee "$work/result"
  grep -q "LC_SCRIPT_TRIGGERED" "$work/result" || { echo "NOT OK  diagnostics are missing" >&2; failed=1; }
fi

echo ".quit" >&3
exec 3>&-
wait "$reader"
[ "$(cat "$work/status")" = 0 ] || failed=1
exit $failed
