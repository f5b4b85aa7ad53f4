#!/bin/sh
# Takes the README's screenshots of the running program on a virtual screen.
# Needs Xvfb, ImageMagick (import, convert) and xdotool; run after a build.
# Usage: scripts/screenshots.sh [build folder]   -> docs/screenshots/*.png
set -e
cd "$(dirname "$0")/.."
BUILD=${1:-build}
OUT=docs/screenshots
mkdir -p "$OUT"
TMP=$(mktemp -d)
export DISPLAY=${BRANTOK_DISPLAY:-:97}
Xvfb "$DISPLAY" -screen 0 1280x800x24 >/dev/null 2>&1 &
XVFB=$!
trap 'kill $XVFB 2>/dev/null; rm -rf "$TMP"' EXIT
sleep 1
export XDG_RUNTIME_DIR="$TMP"
# The window stands at 66,66 and is 800 x 600 (the store's defaults).
crop() { import -window root "$TMP/shot.png" && convert "$TMP/shot.png" -crop 800x600+66+66 +repage -strip "$OUT/$1"; }

# The main menu, then an entry under the mouse.
printf '[General]\nSet=Yes\n' > "$TMP/set.conf"
BRANTOK_STORE="$TMP/set.conf" "./$BUILD/brantok" >/dev/null 2>&1 &
APP=$!
sleep 2
crop main-menu.png
xdotool mousemove 560 420
sleep 0.5
crop main-menu-hover.png
kill $APP

# The first run: the welcome over the main window.
BRANTOK_STORE="$TMP/first.conf" "./$BUILD/brantok" >/dev/null 2>&1 &
APP=$!
sleep 2
crop first-run.png
kill $APP

# The busy book while a file is read.
BRANTOK_STORE="$TMP/set.conf" "./$BUILD/showcase/ui_showcase" busy >/dev/null 2>&1 &
APP=$!
sleep 1.5
crop busy.png
kill $APP
# The machining screen halfway through a run, and the prompt of a tool change.
"./$BUILD/showcase/machining_showcase" machining >/dev/null 2>&1 &
APP=$!
sleep 7
crop machining.png
kill $APP
"./$BUILD/showcase/machining_showcase" toolchange >/dev/null 2>&1 &
APP=$!
sleep 9
crop toolchange.png
kill $APP
# The set-up wizard walked offline with a sample part (a window 1120 pixels wide, so that
# the file header stands beside the wizard), and the subsequent-part choice.
cropw() { import -window root "$TMP/shot.png" && convert "$TMP/shot.png" -crop 1120x600+66+66 +repage -strip "$OUT/$1"; }
for scene in step1 tools billet task step8 method; do
    "./$BUILD/showcase/wizard_showcase" $scene >/dev/null 2>&1 &
    APP=$!
    sleep 6
    cropw "wizard-$scene.png"
    kill $APP
done

# The toolpath preview of the pocket sample: the picture `brantok-nc preview` writes, and the
# Preview window on the same analysed file.
cp samples/Pocket2Tools.brx "$TMP/"
printf '[General]\nRapidSpeed=500\nKeepFiles=Yes\nToolCount=2\nTool01=1|Slot drill|6.000|0.000\nTool02=2|End mill|3.000|0.000\n' > "$TMP/tools.conf"
BRANTOK_STORE="$TMP/tools.conf" "./$BUILD/brantok-nc" preview "$TMP/Pocket2Tools.brx" -o "$OUT/preview-pocket.png" --size 1100x720
"./$BUILD/showcase/preview_shot" "$TMP/Pocket2Tools.ncx" >/dev/null 2>&1 &
APP=$!
sleep 3
import -window root "$TMP/shot.png" && convert "$TMP/shot.png" -crop 1000x700+0+0 +repage -strip "$OUT/preview-window.png"
kill $APP
# The tool offset wizard: its first page, the choice of the tool, a task on the manual screen.
for page in datum tools task; do
  BRANTOK_STORE="$TMP/set.conf" "./$BUILD/showcase/offset_showcase" $page >/dev/null 2>&1 &
  APP=$!
  sleep 2
  crop offset-$page.png
  kill $APP
done
# The open dialog with its side panel: the recent files and the header of the file under the cursor.
printf '[General]\nSet=Yes\n' > "$TMP/files.conf"
BRANTOK_STORE="$TMP/files.conf" "./$BUILD/showcase/ui_showcase" files "$BUILD/Brantok Allsorts/Sample Brantok files" >/dev/null 2>&1 &
APP=$!
sleep 2.5
import -window "$(xdotool search --name 'Select file to be edited' | head -1)" "$TMP/shot.png" && convert "$TMP/shot.png" -strip "$OUT/file-dialog.png"
kill $APP
# Billet help, pages 1, 2 and 5, once the billet has slid to its place.
for page in 1 2 5; do
    BRANTOK_STORE="$TMP/set.conf" "./$BUILD/showcase/ui_showcase" billet $page >/dev/null 2>&1 &
    APP=$!
    sleep 2.5
    crop billet-$page.png
    kill $APP
done
# The serial adapter pulled mid-run (the emulator program killed): the hardware alarm.
"./$BUILD/showcase/machining_showcase" pulled >/dev/null 2>&1 &
APP=$!
sleep 9
crop pulled-adapter.png
kill $APP
# The settings dialog's four pages, the password prompt after a wrong try, and the rate test
# at the end of its run (the recommendation over it). Each cropped to its window.
win() { xdotool search --onlyvisible --name "^$1\$" | head -1; }
shotwin() {
    eval "$(xdotool getwindowgeometry --shell "$(win "$1")")"
    import -window root "$TMP/shot.png" &&
        convert "$TMP/shot.png" -crop "$((WIDTH + ${3:-0}))x$((HEIGHT + ${4:-0}))+$X+$Y" +repage -strip "$OUT/$2"
}
for page in mill machining keyboard password; do
    BRANTOK_STORE="$TMP/set.conf" "./$BUILD/showcase/settings_showcase" $page >/dev/null 2>&1 &
    APP=$!
    sleep 1.5
    shotwin "Brantok Settings" settings-$page.png
    kill $APP
done
BRANTOK_STORE="$TMP/set.conf" "./$BUILD/showcase/settings_showcase" pass >/dev/null 2>&1 &
APP=$!
sleep 1.5
shotwin "Brantok - password" password-oops.png
kill $APP
BRANTOK_STORE="$TMP/rate.conf" "./$BUILD/showcase/settings_showcase" ratetest >/dev/null 2>&1 &
APP=$!
sleep 25
shotwin "Rapid Rate Test" rate-test.png
kill $APP
ls -l "$OUT"
