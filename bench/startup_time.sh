#!/usr/bin/env bash
# Time from starting the program to its main window on screen, on the demo installation.
# Usage: bench/startup_time.sh [RUNS]   (after scripts/demo has built build/release and build/demo)
set -euo pipefail
cd "$(dirname "$0")/.."
runs=${1:-5}
export XDG_CONFIG_HOME="$PWD/build/demo/config"
program="$PWD/build/release/src/mercantel"
[ -x "$program" ] || { echo "build the program first: scripts/demo" >&2; exit 1; }

xvfb-run -a -s "-screen 0 1280x800x24" bash -c '
    program=$1; runs=$2
    for run in $(seq "$runs"); do
        start=$(date +%s%N)
        "$program" & pid=$!
        # The frame window carries the versioned title once the main window is shown.
        until xwininfo -root -tree 2>/dev/null | grep -q "Version Beta [0-9.]*\": (\""; do sleep 0.01; done
        end=$(date +%s%N)
        echo "run $run: $(( (end - start) / 1000000 )) ms"
        kill "$pid"; wait "$pid" 2>/dev/null || true
    done
' _ "$program" "$runs"
