#!/bin/sh
# fresh_machine.sh 12|13 [--share FOLDER] [--bare] COMMAND...
# Runs COMMAND on a bare Debian of that number, in a clone of what is committed here, and ends with the command's own
# code. --share has a folder of this machine appear there as /srv; --bare leaves the clone out.
#
# fresh_machine.sh 12|13
# Makes the package on such a machine, installs it on another one from its file alone, and starts it there as an ordinary
# user (scripts/try_package.sh). Package and picture lie in build/package/debian-NUMBER afterwards.
#
# The machine is a folder of its own that only borrows kernel and network, and is taken down afterwards, also when
# this is interrupted. Ends with 77 where no such machine can be made, and says why.
#
# What makes a second time faster lies in $XDG_CACHE_HOME/zarvela-build/debian-NUMBER: the bare system (brought up to
# date at each use, made anew each month), downloaded packages, and compiled objects. It can be thrown away at any time.
set -u
root=$(cd "$(dirname "$0")/.." && pwd -P) || exit 1
say() { printf 'fresh machine: %s\n' "$*" >&2; }
cannot() {
  say "no fresh machine can be made here: $*"
  exit 77
}

number=${1:-}
case $number in
  12) codename=bookworm ;;
  13) codename=trixie ;;
  *) say 'usage: fresh_machine.sh 12|13 [--share FOLDER] [--bare] [COMMAND...]'; exit 2 ;;
esac
shift
if [ $# = 0 ]; then
  share=$root/build/package/debian-$number
  mkdir -p "$share" || exit 1
  "$0" "$number" --share "$share" scripts/package.sh /srv || exit
  cp "$root/scripts/try_package.sh" "$share/" || exit 1
  exec "$0" "$number" --share "$share" --bare /srv/try_package.sh
fi
share=
bare_only=
while :; do
  case ${1:-} in
    --share) share=$(cd "${2:-}" && pwd -P) || exit 2; shift 2 ;;
    --bare) bare_only=1; shift ;;
    *) break ;;
  esac
done
[ $# -gt 0 ] || { say 'no command to run'; exit 2; }

[ "$(id -u)" = 0 ] || cannot 'it takes root'
command -v apt-get >/dev/null 2>&1 || cannot 'this is no Debian'
"$root/scripts/setup.sh" machine || cannot 'what makes one cannot be installed'
unshare --mount true 2>/dev/null || cannot 'nothing may be mounted'

# Where Debian comes from, as "address suite" lines: what apt itself uses here, under the name of the wanted number.
sources() {
  apt-get indextargets --format '$(ORIGIN) $(REPO_URI) $(RELEASE)' 'Created-By: Packages' 2>/dev/null |
    sed -nE 's/^Debian ([^ ]+) [a-z]+(|-updates|-security)$/\1 '"$codename"'\2/p' | sort -u
}
# Which of them belongs to Debian is told by the package lists, which a machine may have thrown away.
sources=$(sources)
if [ -z "$sources" ]; then
  apt-get -q update >&2
  sources=$(sources)
fi
mirror=$(printf '%s\n' "$sources" | sed -n "s/ $codename\$//p" | head -n 1)
[ -n "$mirror" ] || cannot 'apt knows no source of Debian'

cache=${XDG_CACHE_HOME:-${HOME:-/var/cache}/.cache}/zarvela-build/debian-$number
mkdir -p "$cache/ccache" "$cache/packages/partial" || exit 1
exec 9>"$cache/lock"
if ! flock -n 9; then
  say 'another one uses the cache; going on without it'
  cache=
fi

machine=$(mktemp -d /var/tmp/zarvela-machine.XXXXXX) || exit 1
running=
take_down() {
  trap '' EXIT HUP INT TERM
  # With the first process of the machine all others end, and with the last of them its mounts go.
  if [ -n "$running" ]; then kill -KILL "$running" 2>/dev/null && wait "$running" 2>/dev/null; fi
  tries=0
  until rm -rf --one-file-system "$machine" 2>/dev/null; do
    tries=$((tries + 1))
    if [ $tries -ge 50 ]; then
      say "this is left over: $machine"
      break
    fi
    sleep 0.1
  done
}
trap take_down EXIT
interrupted() {
  say 'interrupted'
  exit "$1"
}
trap 'interrupted 129' HUP
trap 'interrupted 130' INT
trap 'interrupted 143' TERM
# Every longer step runs in the background and is waited for: a shell that waits for its foreground hears an interrupt
# only once that has ended.
exec 8<&0
aside() {
  "$@" <&8 8<&- 9<&- &
  running=$!
  wait $running
  set -- $?
  running=
  return "$1"
}

# A process number one of its own, with which all other processes end, and mounts that nobody else sees.
apart() { exec unshare --mount --propagation private --pid --fork --kill-child --mount-proc "$@"; }

# inside COMMAND...: in the machine.
inside() {
  export machine cache share
  # shellcheck disable=SC2016 # for the inner shell
  apart sh -c '
    mount --bind "$machine" "$machine" && mount -t proc proc "$machine/proc" && mount --bind /dev "$machine/dev" &&
      mount -t tmpfs -o mode=1777 shm "$machine/dev/shm" &&
      mount -t devpts -o newinstance,ptmxmode=0666,mode=620,gid=5 devpts "$machine/dev/pts" || exit 125
    mount -t sysfs -o ro sysfs "$machine/sys" 2>/dev/null
    if [ -n "$cache" ]; then
      mount --bind "$cache/packages" "$machine/var/cache/apt/archives" &&
        mount --bind "$cache/ccache" "$machine/var/cache/ccache" || exit 125
    fi
    if [ -n "$share" ]; then mount --bind "$share" "$machine/srv" || exit 125; fi
    # A root of its own instead of a chroot, in which the sandbox of the engine could not make one.
    mkdir -p "$machine/old" && cd "$machine" && pivot_root . old && umount -l /old || exit 125
    exec env -i --default-signal=INT,QUIT PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root \
      LC_ALL=C.UTF-8 TERM="${TERM:-dumb}" DEBIAN_FRONTEND=noninteractive CCACHE_DIR=/var/cache/ccache \
      ${http_proxy:+http_proxy="$http_proxy"} ${https_proxy:+https_proxy="$https_proxy"} \
      ${no_proxy:+no_proxy="$no_proxy"} "$@"' inside "$@"
}

bootstrap() { aside apart debootstrap --variant=minbase "$codename" "$machine" "$mirror" >&2; }

# Tells the bare system where its packages come from and how they are reached, and brings it up to date.
prepare() {
  mkdir -p "$machine/var/cache/apt/archives" "$machine/var/cache/ccache" "$machine/etc/ssl/certs" || return
  printf '%s\n' "$sources" | sed 's/.*/deb & main/' >"$machine/etc/apt/sources.list"
  apt-config dump | grep -E '^Acquire::(https?|Retries|Check-|ForceIPv)' >"$machine/etc/apt/apt.conf.d/90machine"
  cp -L /etc/resolv.conf "$machine/etc/resolv.conf" || return
  cp -L /etc/ssl/certs/ca-certificates.crt "$machine/etc/ssl/certs/" 2>/dev/null
  # Nothing here outlives the command, so no package has to reach the disk before the next one.
  echo force-unsafe-io >"$machine/etc/dpkg/dpkg.cfg.d/machine"
  aside inside sh -c 'apt-get -q update && apt-get -q -y -o Dpkg::Use-Pty=0 dist-upgrade && apt-get -q autoclean' >&2
}

begun=$(date +%s)
say "making a Debian $number ($codename)"
# debootstrap does not read apt's settings.
eval "$(apt-config shell proxy Acquire::http::Proxy)"
if [ -n "${proxy:-}" ] && [ "$proxy" != DIRECT ]; then export http_proxy="${http_proxy:-$proxy}"; fi

bare=
if [ -n "$cache" ]; then bare=$(find "$cache" -maxdepth 1 -name bare.tar.gz -mtime -30); fi
if [ -n "$bare" ] && aside tar -C "$machine" -xzf "$bare" && prepare; then
  say 'the bare system was there already and is up to date'
else
  rm -rf --one-file-system "$machine" && mkdir -m 755 "$machine" || exit 1
  bootstrap || cannot 'debootstrap failed; see above'
  if [ -n "$cache" ] && aside tar -C "$machine" --one-file-system -czf "$cache/bare.new" .; then
    mv "$cache/bare.new" "$cache/bare.tar.gz"
  fi
  prepare || cannot 'its packages are out of reach; see above'
fi

if [ -n "$bare_only" ]; then
  mkdir -p "$machine/usr/src/zarvela"
elif ! git clone --quiet --no-hardlinks -- "$root" "$machine/usr/src/zarvela"; then
  say 'what is committed here could not be cloned'
  exit 1
fi
say "ready after $(($(date +%s) - begun)) seconds; running: $*"
# shellcheck disable=SC2016 # for the inner shell
aside inside sh -c 'cd /usr/src/zarvela && exec "$@"' command "$@"
