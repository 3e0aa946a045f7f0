#!/bin/sh
# Makes a Debian package for the Debian that it runs on, and writes its path:   scripts/package.sh [folder]
# Without a folder it goes to build/package. What is missing on the machine is installed first.
set -u
root=$(cd "$(dirname "$0")/.." && pwd -P) || exit 1
mkdir -p "${1:-$root/build/package}" || exit 1
folder=$(cd "${1:-$root/build/package}" && pwd -P) || exit 1

"$root/scripts/setup.sh" build package || exit 1
"$root/scripts/build.sh" zarvela || exit 1
rm -f "$folder"/zarvela_*.deb
(cd "$root/build" && cpack -B "$folder" >&2) || exit 1
rm -rf "$folder/_CPack_Packages"
ls "$folder"/zarvela_*.deb
