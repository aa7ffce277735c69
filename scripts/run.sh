#!/bin/sh
# run.sh BUILD [SOLUTION]: the simulated FileMaker with the plug-in. A prompt on a terminal, else the tour.
set -eu

build=$1
solution=${2:-}
here=$(dirname "$0")

# The plug-in's saved sign-in of these runs stays below the build folder.
XDG_CONFIG_HOME=$(cd "$build" && pwd)/config
export XDG_CONFIG_HOME

set -- --plugin "$build/Varnix.fmx"
if [ -n "$solution" ]; then
  set -- "$@" --open "$solution"
  tour=$here/tour-any.txt
else
  set -- "$@" --open samples/Timesheets.xml --open samples/Workshop.xml
  tour=$here/tour.txt
fi

if [ -t 0 ] && [ -t 1 ]; then
  exec "$build/fmsim" "$@"
fi
unset DISPLAY  # the tour has a clipboard of its own, and leaves yours alone
if "$build/fmsim" "$@" < "$tour"; then
  echo "Everything worked. On a terminal, make run gives a prompt to try it yourself."
else
  echo "Something did not work: see above." >&2
  exit 1
fi
