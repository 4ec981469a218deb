#!/usr/bin/env bash
# Takes the guide's screenshots from the real program on a demo installation, in French and in
# English, under a private X server: the main window, a list's configuration, the lists not
# activated, lists under their catalogue, the download tab, a part search and the options
# window. Run it from the source tree after `scripts/demo` (or any build in build/release).
# The clicks follow the main window's default layout on a 1280x800 screen; when the layout
# changes, adjust the positions below.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${BUILD:-build/release}
images=docs/guide/images
if [ -z "${SCREENSHOT_DIR:-}" ]; then
    export SCREENSHOT_DIR=$(mktemp -d)
    trap 'rm -rf "$SCREENSHOT_DIR"' EXIT
fi
work=$SCREENSHOT_DIR
export XDG_CONFIG_HOME="$work/config" XDG_RUNTIME_DIR="$work/runtime"
mkdir -p "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"

# Positions in the window, in pixels.
first_list="100 158"           # ACDELCO - Batteries in the activated lists
list_tab_all="80 106"          # the activated lists
list_tab_inactive="392 106"    # the lists not activated
second_catalogue_arrow="729 146"
list_under_catalogue="850 182" # the same list under its catalogue
info_tab_download="50 370"
info_tab_config="160 370"
info_tab_parts="332 370"
first_update_box="30 428"
part_search_box="600 422"
options_button="384 52"

shoot() { # language
    local lang=$1
    "$build/src/mercantel" &
    local program=$!
    sleep "${SCREENSHOT_WAIT:-8}"
    click() { xdotool mousemove $1 click 1; sleep 0.6; }
    save() { sleep 0.8; import -window root "$work/$lang-$1.png"; }
    save main
    click "$first_list"; click "$info_tab_config"; save config
    click "$list_tab_inactive"; save activate
    click "$list_tab_all"; click "$second_catalogue_arrow"; click "$list_under_catalogue"
    save associate
    click "$info_tab_download"; click "$first_update_box"; save download
    click "$info_tab_parts"; click "$part_search_box"
    xdotool type --delay 60 1; xdotool key Return; save parts
    click "$options_button"
    local options
    options=$(xdotool search --onlyvisible --name '^Options$' 2>/dev/null | head -1 || true)
    [ -n "$options" ] && import -window "$options" "$work/$lang-options.png"
    kill "$program" 2>/dev/null || true
    wait "$program" 2>/dev/null || true
}
# Inside the private X server: the script again, told to shoot one language.
if [ "${1:-}" = --shoot ]; then
    shoot "$2"
    exit
fi

for lang in fr en; do
    flag=()
    [ "$lang" = en ] && flag=(--english)
    rm -rf "$work/install"
    "$build/tools/demo-install/demo-install" "$work/install" --register "${flag[@]}" >/dev/null
    xvfb-run -a -s "-screen 0 1280x800x24" "$0" --shoot "$lang"
done

# Lossless, in a palette: the window's few colours keep the guide small.
for shot in "$work"/*.png; do
    convert "$shot" -strip -dither None -colors 255 "PNG8:$images/$(basename "$shot")"
done
echo "screenshots in $images"
