#!/usr/bin/env bash
# Starts VetrixTool.exe ENG under Wine on a virtual X display (Xvfb, in a Wine
# prefix of its own with the X11 driver), waits for the window titled
# "Vetrix Tool", clicks "Start Diagnosis" and waits until the finished
# diagnosis shows its summary. Saves a screenshot of the finished screen.
#   check-gui.sh WINE_RUN PREFIX BIN_DIR SCREENSHOT
# Needs xvfb-run, xdotool and ImageMagick (import, convert).
set -uo pipefail
wine_run=$1
prefix=$2
bin=$3
screenshot=$4

fail() { echo "FAIL: $*"; exit 1; }
for tool in xvfb-run xdotool import convert; do
    command -v "$tool" >/dev/null || fail "$tool is missing (apt-get install xvfb xauth xdotool imagemagick)"
done
if [ -z "${VX_CHECK_GUI_ON_XVFB:-}" ]; then
    VX_CHECK_GUI_ON_XVFB=1 exec xvfb-run -a -s "-screen 0 1600x1000x24" "$0" "$@"
fi

work=$(dirname "$screenshot")/check-gui
rm -rf "$work"
mkdir -p "$work"
"$wine_run" --init --x11 --prefix "$prefix" || fail "no Wine prefix"
export WINEPREFIX=$prefix WINEDEBUG=-all
wineserver=$(command -v wineserver || echo /usr/lib/wine/wineserver)

"$wine_run" --prefix "$prefix" --bin "$bin" "$bin/VetrixTool.exe" ENG >"$work/program.log" 2>&1 &
program=$!
stop() {
    "$wineserver" -k 2>/dev/null
    "$wineserver" -w
    wait "$program" 2>/dev/null
}
trap stop EXIT

# The bounding boxes and centres of the areas in colour $2 (within 15 %) of
# the picture $1, largest first: "WxH+X+Y CX,CY AREA".
areas() {
    convert "$1" -alpha off -fuzz 15% -fill "rgb(255,0,255)" -opaque "$2" -fuzz 0 \
        -fill black +opaque "rgb(255,0,255)" -fill white -opaque "rgb(255,0,255)" \
        -define connected-components:verbose=true -define connected-components:area-threshold=100 \
        -connected-components 8 null: | awk '/srgb\(255,255,255\)/ { print $2, $3, $4 }' | sort -k3 -n -r
}

window=
for _ in $(seq 120); do
    window=$(xdotool search --name '^Vetrix Tool$' 2>/dev/null | head -1)
    [ -n "$window" ] && break
    kill -0 "$program" 2>/dev/null || fail "the program ended before showing its window: $(cat "$work/program.log")"
    sleep 1
done
[ -n "$window" ] || fail "no window titled 'Vetrix Tool' within 120 s"
echo "window 'Vetrix Tool' is shown"

# "Start Diagnosis" is the one large orange button of the start screen.
button=
for _ in $(seq 30); do
    import -window root "$work/start.png"
    button=$(areas "$work/start.png" "rgb(252,130,0)" | awk '$3 > 1500 { print $2; exit }')
    [ -n "$button" ] && break
    sleep 1
done
[ -n "$button" ] || fail "no 'Start Diagnosis' button on the start screen (see $work/start.png)"
x=${button%,*}
y=${button#*,}
# The finished diagnosis shows a large green check mark left of the
# button; the start screen has none.
finished() { areas "$1" "rgb(2,191,15)" | awk -v y="${y%.*}" '$3 > 1000 { split($2, c, ","); if (c[2] > y - 80 && c[2] < y + 80) found = 1 } END { exit !found }'; }
finished "$work/start.png" && fail "the start screen already shows a finished diagnosis"
xdotool mousemove "${x%.*}" "${y%.*}" click 1
echo "clicked 'Start Diagnosis' at $x,$y"

done=0
for _ in $(seq 90); do
    sleep 2
    import -window root "$work/screen.png"
    if finished "$work/screen.png"; then
        done=1
        break
    fi
done
[ "$done" -eq 1 ] || fail "the diagnosis did not finish within 180 s (see $work/screen.png)"
# Let the last rows paint, then keep the finished screen.
sleep 1
import -window root "$screenshot" || fail "no screenshot"
echo "the diagnosis finished; screenshot: $screenshot"
