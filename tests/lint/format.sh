#!/bin/sh
# Fails when a source of src, tests or bench does not follow .clang-format, and shows where.
#   format.sh [project folder]
# Version 14 decides, since other versions break some lines elsewhere; where it is not installed, ends with 77: left out.
set -u
cd "${1:-$(dirname "$0")/../..}" || exit 2

formatter=
for candidate in clang-format-14 clang-format; do
  if "$candidate" --version 2>/dev/null | grep -q 'version 14\.'; then
    formatter=$candidate
    break
  fi
done
if [ -z "$formatter" ]; then
  echo 'no clang-format 14 here; the form of the sources was not checked'
  exit 77
fi

sources=$(find src tests bench -name '*.cpp' -o -name '*.h')
if [ -z "$sources" ]; then
  echo 'no source found at all; is this the project folder?'
  exit 2
fi
printf '%s\n' "$sources" | sort | tr '\n' '\0' | xargs -0 "$formatter" --dry-run --Werror || exit 1
