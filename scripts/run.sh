#!/bin/sh
# run.sh BUILD [SOLUTION]: runs the local bridge service, and the simulated FileMaker with the plug-in signed in to it. On
# a terminal it gives a prompt, otherwise it runs the tour.
set -eu

build=$1
solution=${2:-}
scripts=$(dirname "$0")

work=$(mktemp -d)
service=
finish() {
  [ ! -e "$work/clipboard" ] || pbcopy < "$work/clipboard"
  [ -z "$service" ] || kill "$service" 2>/dev/null || true
  rm -rf "$work"
}
trap finish EXIT
trap 'exit 130' INT
trap 'exit 143' TERM

if [ -n "$solution" ] && ! "$build/fmsim" --open "$solution" --idle 0; then
  exit 1  # fmsim has printed the reason
fi

interactive=
if [ -t 0 ] && [ -t 1 ]; then interactive=yes; fi

# On a terminal, sign-in and commands are kept between runs, below the build folder; the tour starts from scratch.
kept=$(cd "$build" && pwd)
[ -n "$interactive" ] || kept=$work
export XDG_CONFIG_HOME="$kept/config"

# In its own process group, so that Ctrl-C at the prompt does not end it.
unset VARNIX_KEY
[ -z "$interactive" ] || set -m
"$build/varnix-service" serve --listen 127.0.0.1:0 --data "$kept/service-data" --latest-version 99.0.0 \
  > "$work/address" 2> "$kept/service.log" &
service=$!
set +m
tries=0
until [ -s "$work/address" ]; do
  tries=$((tries + 1))
  if [ $tries -gt 100 ] || ! kill -0 "$service" 2>/dev/null; then
    cat "$kept/service.log" >&2
    echo "The bridge service did not start." >&2
    exit 1
  fi
  sleep 0.1
done
VARNIX_SERVICE=$(head -n 1 "$work/address")
VARNIX_DATA="$kept/service-data"
export VARNIX_SERVICE VARNIX_DATA
key=$(cat "$VARNIX_DATA/key")

if [ -n "$solution" ]; then
  set -- --open "$solution"
else
  set -- --open samples/Timesheets.xml --open samples/Workshop.xml
fi
plugin=$build/Varnix.fmx
[ -e "$plugin" ] || plugin=$build/Varnix.fmplugin
set -- --plugin "$plugin" "$@"

if [ -n "$interactive" ]; then
  trap : INT  # fmsim handles it
  "$build/fmsim" "$@" \
    --eval "Varnix.Register ( \"you@example.com\" ; \"$key\" ; Get ( PersistentID ) ; \"$VARNIX_SERVICE\" )" > "$work/sign-in"
  echo "The local bridge service is at $VARNIX_SERVICE; the plug-in is signed in: $(cat "$work/sign-in")"
  sed -n 's/^Console: /Its console, for a browser:/p' "$work/address"
  echo "From another terminal:  $build/varnix-service send list-files --service $VARNIX_SERVICE --data $build/service-data"
  status=0
  "$build/fmsim" "$@" || status=$?
  exit $status
fi

unset DISPLAY  # the tour then has its own clipboard, and leaves yours alone
if [ "$(uname -s)" = Darwin ]; then
  echo "On a Mac the tour uses your clipboard. Text on it is restored at the end, other content is not."
  pbpaste > "$work/clipboard"
  defaults delete com.varnix.fmsim 2>/dev/null || true  # the sign-in of an earlier run
fi
if "$scripts/tour.sh" "$build" "$work" "${solution:+any}" "$@"; then
  echo "Everything worked. On a terminal, make run gives a prompt, so that you can try it yourself."
else
  echo "Something did not work: see above." >&2
  exit 1
fi
