#!/bin/sh
# Builds the given targets of the release preset in the folder "build"; without targets, everything. Configures only
# where that has not been done.
set -u
cd "$(dirname "$0")/.." || exit 1
root=$(pwd -P)

configured=$(sed -n 's/^CMAKE_HOME_DIRECTORY:INTERNAL=//p' build/CMakeCache.txt 2>/dev/null)
if [ ! -f build/build.ninja ] || [ "$configured" != "$root" ]; then
  # A tree that was moved here with its build folder is configured anew.
  cmake --preset release ${configured:+--fresh} >&2 || exit 1
fi
exec ninja -C build "$@" >&2
