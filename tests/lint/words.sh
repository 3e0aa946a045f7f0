#!/bin/sh
# Fails when the sources hold work left over, a path of somebody's machine, or the address of a real host.
#   words.sh [project folder]
set -u
cd "${1:-$(dirname "$0")/../..}" || exit 2
for needed in src tests CMakeLists.txt; do
  if [ ! -e "$needed" ]; then
    echo "no $needed here; is this the project folder?"
    exit 2
  fi
done
faults=0

# search PATTERN PLACES...: "file:line:text" of every matching line of text. This folder names what it looks for.
search() {
  pattern=$1
  shift
  grep -rnIsE --exclude-dir=lint -e "$pattern" -- "$@"
}
complain() {
  [ -n "$2" ] || return
  printf '%s:\n%s\n' "$1" "$2"
  faults=1
}

set -- src tests bench resources packaging scripts Languages docs cmake run test CMakeLists.txt README.md

complain 'Left to do' "$(search '\b(TODO|FIXME|XXX|HACK)\b' "$@")"
complain "A path of somebody's machine" \
  "$(search '(^|[^A-Za-z0-9_.$}/~-])/(home|root|work|Users|mnt|media)/[A-Za-z0-9_]' "$@")"

# Hosts that belong to nobody, names that XML only uses as names, and a prefix that no host follows are fine.
nobody='127\.[0-9.]+|localhost|([A-Za-z0-9-]+\.)*example(\.(com|net|org))?|([A-Za-z0-9-]+\.)*(invalid|test)'
complain 'The address of a real host' "$(search 'https?://' src resources Languages packaging |
  sed -E -e "s#https?://($nobody)([^A-Za-z0-9.-]|\.?\$)#\4#g" \
    -e 's#https?://www\.(w3\.org|freedesktop\.org/standards)/##g' -e 's#https?://www\."#"#g' |
  grep -E 'https?://[A-Za-z0-9-]+\.[A-Za-z0-9]')"
exit $faults
