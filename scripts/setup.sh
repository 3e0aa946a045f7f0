#!/bin/sh
# Sees to it that the packages are there that a job needs, on Debian 12 and newer. This is the one list of them.
#
#   scripts/setup.sh build            what compiling, running and testing need
#   scripts/setup.sh build screen     and a screen in memory with the tools that photograph it, for a machine without one
#   scripts/setup.sh build fuzz       and the compiler of the fuzzers
#   scripts/setup.sh build package    and what makes a package of it
#   scripts/setup.sh machine          what makes a bare Debian in a folder
#
# Asks nothing. When nothing is missing it is silent and calls no package manager.
set -u

# The compiler, the build, and what checks the form of the sources; Qt with its web engine, SVG and PDF parts; SQLite;
# ICU. xdg-utils speaks to the desktop (default browser, mail), the fonts give a bare machine something to write with,
# in Latin, Arabic and Japanese. What windows are to a desktop is tested on an X server in memory with a window manager
# and a panel.
build_packages='g++ cmake ninja-build ccache mold pkg-config clang-format
  qt6-base-dev qt6-webengine-dev qt6-svg-dev qt6-pdf-dev qt6-translations-l10n
  libsqlite3-dev libicu-dev xdg-utils fonts-dejavu-core fonts-vlgothic xvfb openbox x11-utils
  trayer xdotool'
# From Debian 13 on, what draws the icons is a package of its own, which nothing else brings along.
release=$(sed -n 's/^VERSION_ID="*\([0-9]*\).*$/\1/p' /etc/os-release 2>/dev/null)
[ "${release:-13}" -lt 13 ] || build_packages="$build_packages qt6-svg-plugins"
screen_packages='xdotool imagemagick'
fuzz_packages='clang libclang-rt-dev'
package_packages='dpkg-dev file'
machine_packages='debootstrap git'

say() { printf 'setup: %s\n' "$*" >&2; }

wanted=
for group in "$@"; do
  case $group in
    build) wanted="$wanted $build_packages" ;;
    screen) wanted="$wanted $screen_packages" ;;
    fuzz) wanted="$wanted $fuzz_packages" ;;
    package) wanted="$wanted $package_packages" ;;
    machine) wanted="$wanted $machine_packages" ;;
    *) say "unknown group of packages: $group"; exit 2 ;;
  esac
done

if ! command -v dpkg-query >/dev/null 2>&1; then
  say "this is no Debian; going on with what is installed (Debian's names:$wanted)"
  exit 0
fi

# dpkg-query writes nothing for a name it has never heard of, so what is installed is asked for, not what is missing.
# shellcheck disable=SC2086 # a list of words
installed=$(dpkg-query -W -f '${db:Status-Status} ${Package}\n' $wanted 2>/dev/null | sed -n 's/^installed //p')
missing=
for package in $wanted; do
  case "
$installed
" in
    *"
$package
"*) ;;
    *) missing="$missing $package" ;;
  esac
done
[ -n "$missing" ] || exit 0

say "installing$missing"
if [ "$(id -u)" = 0 ]; then
  as_root='env'
elif command -v sudo >/dev/null 2>&1; then
  as_root='sudo env'
else
  say "this needs root, and sudo is not here. As root: apt-get update && apt-get install$missing"
  exit 1
fi
apt() { $as_root DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0 "$@" </dev/null >&2; }
# A failed refresh is no reason to stop: the lists that are there may do.
apt update || say "the package lists could not be refreshed"
# shellcheck disable=SC2086
if ! apt install -y --no-install-recommends $missing; then
  say "the packages could not be installed; see above"
  exit 1
fi
