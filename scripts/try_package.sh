#!/bin/sh
# Installs the Zarvela package that lies beside this file, and starts it as an ordinary user on a screen in memory, with
# the engine's sandbox on. Ends well when the page came, in a process that the sandbox holds. For a machine to be thrown
# away, as root; a picture of the window is left beside the package.
set -u
folder=$(cd "$(dirname "$0")" && pwd -P) || exit 1
say() { printf 'try: %s\n' "$*" >&2; }
fail() {
  say "$*"
  exit 1
}

apt() { DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Dpkg::Use-Pty=0 "$@" </dev/null >&2; }
apt update
apt install --no-install-recommends "$folder"/zarvela_*.deb || fail 'the package cannot be installed'
# For the trial alone: a screen, a look at it and at the processes, and letters.
apt install --no-install-recommends xvfb openbox xdotool imagemagick procps fonts-dejavu-core || exit 1

useradd --create-home --home-dir /var/lib/tester tester || exit 1
cat >/var/lib/tester/page.html <<'PAGE'
<title>...</title><body style="font: 40px sans-serif">Installed from the package alone.
<script>document.title = 'The page has come'</script>
PAGE
cat >/var/lib/tester/start.sh <<'START'
Xvfb :7 -screen 0 1280x900x24 -nolisten tcp >/dev/null 2>&1 &
export DISPLAY=:7
until xdotool getmouselocation >/dev/null 2>&1; do sleep 0.2; done
openbox >/dev/null 2>&1 &
exec zarvela /var/lib/tester/page.html
START
chown -R tester /var/lib/tester
su - tester -c 'sh start.sh' >"$folder/log" 2>&1 &

tries=0
until DISPLAY=:7 xdotool search --name 'The page has come' >/dev/null 2>&1; do
  tries=$((tries + 1))
  if [ $tries -ge 60 ]; then
    cat "$folder/log" >&2
    fail 'the page did not come'
  fi
  sleep 1
done
sleep 2
DISPLAY=:7 import -window root "$folder/zarvela.png"
chmod a+r "$folder/zarvela.png"

pgrep -u tester -f 'zarvela.*--no-sandbox|Process.*--no-sandbox' >/dev/null && fail 'the sandbox is off'
# 2: the process may call nothing but what a filter lets through, and what it sees of the system is a name space's.
held=
for process in $(pgrep -u tester -f QtWebEngineProcess); do
  [ "$(sed -n 's/^Seccomp:[[:space:]]*//p' "/proc/$process/status")" = 2 ] || continue
  [ "$(readlink "/proc/$process/ns/user")" = "$(readlink /proc/self/ns/user)" ] || held=$process
done
if [ -z "$held" ]; then
  ps -u tester -o pid,args >&2
  fail 'no page is in a sandbox'
fi
say 'installed, started as an ordinary user, and the page came in the sandbox'
pkill -u tester
apt remove zarvela || fail 'the package cannot be removed'
if [ -e /usr/bin/zarvela ] || [ -e /usr/share/zarvela ]; then fail 'something of the package is left'; fi
