#!/bin/sh
# Takes the pictures in docs/images/: of the window in light and dark colours, at twice the scale, small, and read from
# right to left; of the side bar's favorites and groups; of the options; of what is suggested, a question over a page,
# the groups menu, the quick searches and a blocked pop-up.
#   scripts/pictures.sh [FOLDER]     where to put them instead
#   scripts/pictures.sh --options FOLDER [SCREEN [SCALE]]
#                                    takes all pages of the options in all languages instead, to be looked through before
#                                    a version is handed out: each page as it stands on a screen of that size (800x600 when
#                                    nothing is said), and all pages of a language on one sheet
# The program is built when it has to be, and runs on a screen in memory, in folders of its own, with pages made here and
# served to this machine only.
set -u
root=$(cd "$(dirname "$0")/.." && pwd -P) || exit 1
walk=
if [ "${1:-}" = --options ]; then
  walk=${3:-800x600}
  scale=${4:-1}
  shift
  : "${1:?where to put the pictures}"
fi
images=${1:-$root/docs/images}
say() { printf 'pictures: %s\n' "$*" >&2; }

"$root/scripts/setup.sh" build screen || exit 1
"$root/scripts/build.sh" zarvela || exit 1
mkdir -p "$images" || exit 1

folder=$(mktemp -d "${TMPDIR:-/tmp}/zarvela-pictures.XXXXXX") || exit 1
pages=
end() {
  [ -z "$1" ] || { kill "$1" 2>/dev/null && wait "$1" 2>/dev/null; }
}
clear_away() {
  trap '' EXIT HUP INT TERM
  end "$pages"
  rm -rf "$folder"
}
trap clear_away EXIT
trap 'exit 130' HUP INT TERM

export LC_ALL=C.UTF-8 QT_QPA_PLATFORM=xcb DBUS_SESSION_BUS_ADDRESS=unix:path=/nonexistent
unset WAYLAND_DISPLAY
if [ "$(id -u)" = 0 ]; then export QTWEBENGINE_DISABLE_SANDBOX=1; fi

mkdir "$folder/pages"
python3 -u -m http.server --bind 127.0.0.1 --directory "$folder/pages" 0 >"$folder/port" 2>>"$folder/log" &
pages=$!
waited=0
until port=$(sed -n 's/.* port \([0-9]*\) .*/\1/p' "$folder/port") && [ -n "$port" ] || [ $waited -ge 100 ]; do
  waited=$((waited + 1))
  sleep 0.1
done

# page NAME COLOUR TITLE: a page with an icon of that colour.
page() {
  cat >"$folder/pages/$1.html" <<PAGE
<!doctype html><meta charset="utf-8"><meta name="color-scheme" content="light dark"><title>$3</title>
<link rel="icon" href="data:image/svg+xml,<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 16 16'><rect
width='16' height='16' rx='4' fill='%23$2'/></svg>">
<style>body { font: 17px/1.6 sans-serif; max-width: 40em; margin: 3em auto; padding: 0 1em }
h1 { font-size: 1.9em; line-height: 1.2 } figure { margin: 2em 0; height: 9em; border-radius: 12px; background: #$2 }</style>
<h1>$3</h1><p>Many pages at once, each in its tab: some locked, some named, and all of them there again tomorrow.</p>
<figure></figure><p>What belongs together is kept as a group, a plain file that opens all of its pages.</p>
PAGE
  printf '%s=http://127.0.0.1:%s/%s.html\n' "$3" "$port" "$1" >>"$folder/pages.hgp"
}
printf '[HalvexGroup]\n' >"$folder/pages.hgp"
page garden '388e3c' 'A garden on the roof'
page trains '1565c0' 'Night trains of Europe'
page soup 'ef6c00' 'Lentil soup for eight'
page paper '6a1b9a' 'Folding paper'
page sea '00838f' 'Tides and harbours'

cat >"$folder/pages/windows.html" <<'PAGE'
<!doctype html><meta charset="utf-8"><title>A page with windows</title><style>body { font: 17px/1.6 sans-serif; margin: 3em }
h1 { font-size: 1.9em }</style><h1>A page with windows</h1><p>One of them opens now.</p>
<script>onclick = () => open('ads_offer.html')</script>
PAGE
cat >"$folder/pages/asks.html" <<'PAGE'
<!doctype html><meta charset="utf-8"><title>A page that asks</title><style>body { font: 17px/1.6 sans-serif; margin: 3em }
h1 { font-size: 1.9em }</style><h1>A page that asks</h1><p>Where are you? Nothing on this page moves while it asks.</p>
<script>navigator.geolocation.getCurrentPosition(() => {})</script>
PAGE

# store NAME=VALUE...: the program's settings; KEY/NAME=VALUE is one in a key below theirs.
store() {
  python3 - "$home/config/zarvela/registry.sqlite" "$@" <<'STORE'
import sqlite3, sys
path = r'Software\Velmora\Zarvela\CurrentVersion'
store = sqlite3.connect(sys.argv[1])
def key_of(path, parent, name):
    store.execute('INSERT OR IGNORE INTO keys(hive, path, parent, name) VALUES(0, ?, ?, ?)',
                  (path.casefold(), parent.casefold(), name))
    return store.execute('SELECT id FROM keys WHERE hive = 0 AND path = ?', (path.casefold(),)).fetchone()[0]
for setting in sys.argv[2:]:
    name, value = setting.split('=', 1)
    below, _, name = name.rpartition('/')
    key = key_of(path + '\\' + below, path, below) if below else key_of(path, path.rpartition('\\')[0], 'CurrentVersion')
    store.execute('DELETE FROM entries WHERE key = ? AND folded = ?', (key, name.casefold()))
    store.execute('INSERT INTO entries(key, folded, name, data) VALUES(?, ?, ?, ?)', (key, name.casefold(), name, value))
store.commit()
STORE
}

start() {
  "$root/build/zarvela" "$@" >>"$folder/log" 2>&1 &
  program=$!
}
window() {
  waited=0
  until xdotool search --onlyvisible --class zarvela >/dev/null 2>&1 || [ $waited -ge 150 ]; do
    waited=$((waited + 1))
    sleep 0.1
  done
}
stop() {
  end "$program"
  program=
}

# What is done in the window before some of the pictures. Each leaves in "part" what is to be seen, the window otherwise:
# a size beginning at the window's corner, or "in front" for the window that has come.
suggestions() {
  xdotool key ctrl+l
  xdotool type --delay 50 't'
  part=1000x330
}
groups_menu() {
  xdotool key alt+g
  part=800x330
}
quick_searches() {
  # The fourth item of the menu.
  xdotool key alt+t Down Down Down Return
  part='in front'
}
click_in_page() {
  xdotool mousemove --window "$found" 400 500 click 1
  sleep 1
  xdotool mousemove --window "$found" 400 650
  part=832x606
}
side_bar_favorites() {
  xdotool key ctrl+shift+f
  sleep 1
  xdotool key End Right
  part=1000x520
}
side_bar_groups() {
  # Twice, for the keyboard to come into the bar, which is open.
  xdotool key ctrl+b
  xdotool key ctrl+b
  sleep 1
  xdotool key End Right
  part=1000x520
}
options() {
  xdotool key ctrl+comma
  part='in front'
}
nothing_more() { part=800x400; }
# A page a picture, from the first one in the tree until a key leads to no other, and then the sheet.
options_pages() {
  xdotool key ctrl+comma
  sleep 2
  xdotool key Tab Home
  before=
  for page in $(seq -w 1 40); do
    sleep 0.5
    shot=$images/$name-$page.png
    import -window root -strip "$shot"
    if [ -n "$before" ] && cmp -s "$before" "$shot"; then
      # Unless the machine is only slow.
      sleep 2
      import -window root -strip "$shot"
      if cmp -s "$before" "$shot"; then
        rm "$shot"
        break
      fi
    fi
    before=$shot
    xdotool key Down
  done
  montage "$images/$name"-*.png -tile 4x -geometry '800x>+4+4' "$images/$name.png"
  part=taken
}

# take NAME WIDTH HEIGHT SCREEN SETTING...: one picture. Settings of the form NAME=VALUE are the program's, those that
# begin with "env:" the environment's; "do:" names what is done before, and "open:" what is opened instead of the pages.
take() {
  name=$1 width=$2 height=$3 screen=$4
  shift 4
  home=$folder/$name
  for place in config data cache; do mkdir -p "$home/$place"; done
  mkdir -m 700 "$home/run"
  (
    export HOME="$home" XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" XDG_CACHE_HOME="$home/cache" \
      XDG_RUNTIME_DIR="$home/run"
    set -f
    settings=
    act=
    open=$folder/pages.hgp
    for setting in "$@"; do
      case $setting in
        do:*) act=${setting#do:} ;;
        open:*) open=http://127.0.0.1:$port/${setting#open:} ;;
        env:*) export "${setting#env:}" ;;
        *) settings="$settings $setting" ;;
      esac
    done
    Xvfb -displayfd 3 -screen 0 "${screen}x24" -nolisten tcp -noreset 3>"$home/display" >>"$folder/log" 2>&1 &
    server=$!
    waited=0
    until [ -s "$home/display" ] || [ $waited -ge 100 ]; do
      waited=$((waited + 1))
      sleep 0.1
    done
    DISPLAY=:$(cat "$home/display")
    export DISPLAY
    openbox >>"$folder/log" 2>&1 &
    manager=$!
    program=
    trap 'end "$program"; end "$manager"; end "$server"' EXIT
    # The first start makes the store, which then gets the settings.
    start
    window
    stop
    # shellcheck disable=SC2086 # a list of words
    store AskDefaultBrowser=0 ConfirmShutdown=0 Left=0 Top=0 Width="$width" Height="$height" StartupMode=Blank $settings
    mkdir -p "$home/data/zarvela/HalvexGroups/Travel"
    cp "$folder/pages.hgp" "$home/data/zarvela/HalvexGroups/Morning.hgp"
    cp "$folder/pages.hgp" "$home/data/zarvela/HalvexGroups/Baking & bread.hgp"
    favorites=$home/data/zarvela/Favorites
    mkdir -p "$favorites/Gardening" "$favorites/Travel"
    for place in 'A garden on the roof' 'Lentil soup for eight' 'Gardening/Compost' 'Travel/Night trains of Europe' \
      'Travel/Tides and harbours'; do
      printf '[InternetShortcut]\nURL=http://127.0.0.1:%s/garden.html\n' "$port" >"$favorites/$place.url"
    done
    start "$open"
    window
    # The pages come one after the other, the last with its icon.
    sleep 6
    # Back to the page, so that the address is seen as it is while nobody edits it.
    xdotool key Escape
    sleep 1
    found=$(xdotool search --onlyvisible --name Zarvela | head -n 1)
    # Where its corner is, its frame left aside.
    corner=$(xdotool mousemove --window "$found" 0 0 getmouselocation --shell | sed -n 's/^[XY]=/+/p' | tr -d '\n')
    part=
    [ -z "$act" ] || $act
    [ -z "$act" ] || sleep 2
    case $part in
      '') import -window "$found" "$images/$name.png" ;;
      taken) ;;
      'in front') import -window "$(xdotool getactivewindow)" +dither -colors 128 -strip "PNG8:$images/$name.png" ;;
      *)
        # Menus and lists are windows of their own.
        import -window root -crop "$part$corner" +repage +dither -colors 128 -strip "PNG8:$images/$name.png"
        ;;
    esac
    stop
  ) || return 1
  if [ -s "$images/$name.png" ]; then say "$name.png"; else say "$name.png could not be taken"; return 1; fi
}

if [ -n "$walk" ]; then
  code=0
  for language in "$root"/Languages/*.ini; do
    language=$(basename "$language")
    name=${language%.ini}
    rm -f "$images/$name"-*.png "$images/$name.png"
    take "$name" "${walk%x*}" "${walk#*x}" "$walk" do:options_pages "LanguageFile=$language" "env:QT_SCALE_FACTOR=$scale" ||
      code=1
  done
  exit $code
fi

mkdir -p "$folder/dark/config"
cat >"$folder/dark/config/kdeglobals" <<'COLOURS'
[Colors:Window]
BackgroundNormal=35,38,41
ForegroundNormal=239,240,241
[Colors:View]
BackgroundNormal=27,30,32
BackgroundAlternate=35,38,41
ForegroundNormal=239,240,241
[Colors:Button]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
[Colors:Selection]
BackgroundNormal=61,140,198
ForegroundNormal=252,252,252
[Colors:Tooltip]
BackgroundNormal=49,54,59
ForegroundNormal=239,240,241
COLOURS

code=0
take light 1200 760 1280x900 || code=1
take dark 1200 760 1280x900 env:XDG_CURRENT_DESKTOP=KDE env:KDE_SESSION_VERSION=5 || code=1
take twice_the_scale 1000 640 2200x1500 env:QT_SCALE_FACTOR=2 || code=1
take small 500 400 1280x900 || code=1
take right_to_left 1200 760 1280x900 LanguageFile=zvara.ini || code=1
take side_bar 1000 640 1280x900 do:side_bar_favorites ViewHalvexBar=1 || code=1
take side_bar_groups 1000 640 1280x900 do:side_bar_groups ViewHalvexBar=1 HalvexBarPage=3 || code=1
take options 1000 640 1280x900 do:options || code=1
take suggestions 1000 640 1280x900 do:suggestions || code=1
take question 800 640 1280x900 do:nothing_more open:asks.html || code=1
take groups 1000 640 1280x900 do:groups_menu || code=1
take quick_search 1000 640 1280x900 do:quick_searches 'QuickSearch/web=http://search.example.org/?q=%s' \
  'QuickSearch/wiki=http://wiki.example.org/find/%s' 'QuickSearch/word=http://dictionary.example.org/word/%s' || code=1
take popup 832 606 860x660 do:click_in_page open:windows.html 'PopupHalvex/url1=*ads_*' || code=1
exit $code
