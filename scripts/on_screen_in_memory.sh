#!/bin/sh
# on_screen_in_memory.sh PROGRAM PICTURE [arguments]
# Runs PROGRAM on an X screen in memory and writes a picture of that screen to PICTURE once it stands still, that is,
# once the page has loaded; then waits for the program to end. An interrupt ends both.
set -u
root=$(cd "$(dirname "$0")/.." && pwd -P) || exit 1
program=$1
picture=$2
shift 2
say() { printf 'run: %s\n' "$*" >&2; }

"$root/scripts/setup.sh" screen || exit 1
folder=$(mktemp -d "${TMPDIR:-/tmp}/zarvela-screen.XXXXXX") || exit 1
server=
child=
clear_away() {
  trap '' EXIT HUP INT TERM
  if [ -n "$child" ]; then kill "$child" 2>/dev/null && wait "$child" 2>/dev/null; fi
  if [ -n "$server" ]; then kill "$server" 2>/dev/null && wait "$server" 2>/dev/null; fi
  rm -rf "$folder"
}
trap clear_away EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM

# -displayfd lets the server pick a free display number by itself and write it down when it is ready.
Xvfb -displayfd 3 -screen 0 1280x900x24 -nolisten tcp -noreset 3>"$folder/display" >"$folder/log" 2>&1 &
server=$!
waited=0
while [ ! -s "$folder/display" ]; do
  if [ $waited -ge 100 ] || ! kill -0 $server 2>/dev/null; then
    say "the screen in memory did not start"
    cat "$folder/log" >&2
    exit 1
  fi
  waited=$((waited + 1))
  sleep 0.1
done
DISPLAY=:$(cat "$folder/display")
export DISPLAY QT_QPA_PLATFORM=xcb
rm -f "$picture"
say "no screen here: running on one in memory ($DISPLAY); a picture of it goes to $picture"

"$program" "$@" &
child=$!

alive() { kill -0 $child 2>/dev/null; }
shoot() { import -silent -display "$DISPLAY" -window root "png:$1" 2>/dev/null; }
# A caret may blink and a throbber may turn; the picture stands still when hardly a dot differs from the last one.
still() {
  changed=$(compare -metric AE "$folder/last.png" "$folder/now.png" null: 2>&1)
  case $changed in
    '' | *[!0-9]*) return 1 ;;
  esac
  [ "$changed" -le 400 ]
}

# First a window must be there; then three seconds without a change, and no longer than a minute for all of it.
calm=0
tries=0
while alive && [ $calm -lt 3 ] && [ $tries -lt 60 ]; do
  tries=$((tries + 1))
  sleep 1
  [ -n "$(xdotool search --onlyvisible --name . 2>/dev/null)" ] || continue
  shoot "$folder/now.png" || continue
  if [ -f "$folder/last.png" ] && still; then calm=$((calm + 1)); else calm=0; fi
  mv "$folder/now.png" "$folder/last.png"
done
if alive && [ -f "$folder/last.png" ] && mv "$folder/last.png" "$picture"; then
  say "picture written; the program runs on until it is ended or this is interrupted"
fi
wait $child
code=$?
child=
exit $code
