#!/bin/sh
# Runs a test program with folders of its own for settings, data, cache and run time, offscreen, and clears them away.
set -u
home=$(mktemp -d "${TMPDIR:-/tmp}/zarvela-test.XXXXXX") || exit 1
mkdir -p "$home/config" "$home/data" "$home/cache" "$home/run" "$home/tmp"
chmod 700 "$home/run"
export HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" XDG_CACHE_HOME="$home/cache"
export XDG_RUNTIME_DIR="$home/run" TMPDIR="$home/tmp" LC_ALL=C.UTF-8
export QT_QPA_PLATFORM="${ZV_TEST_PLATFORM:-offscreen}" QT_LOGGING_RULES="qt.qpa.*=false;*.debug=false"
export XDG_CURRENT_DESKTOP= DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent
# What is done to files is done when a call returns, also where the machine has much else to do.
export ZV_FILE_MOMENT="${ZV_FILE_MOMENT:-20000}"
export LSAN_OPTIONS="${LSAN_OPTIONS:-detect_leaks=0}"
# The engine library frees some objects through another type; that is not ours to fix.
export ASAN_OPTIONS="${ASAN_OPTIONS:-new_delete_type_mismatch=0}"
if [ "$(id -u)" = 0 ]; then export QTWEBENGINE_DISABLE_SANDBOX=1; fi
"$@"
code=$?
chmod -R u+w "$home" 2>/dev/null
rm -rf "$home"
exit $code
