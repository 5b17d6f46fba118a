#!/usr/bin/env bash
# Start-up benchmark: time from process start to the main window shown (the
# program quits right after its first paint with --quit-after-show), and
# peak memory, median of 5 runs on the offscreen platform.
# Targets: 0.5 s and 80 MB. Then the resource loop's cost.
#   build/bin/bench_startup.sh [runs]
set -euo pipefail
bin=$(cd "$(dirname "$0")" && pwd)
runs=${1:-5}
tmp=$(mktemp -d)
trap 'rm -rf "$tmp"' EXIT
export QT_QPA_PLATFORM=offscreen
export XDG_RUNTIME_DIR="$tmp/run" XDG_DATA_HOME="$tmp/data" XDG_CONFIG_HOME="$tmp/config"
mkdir -p -m 700 "$XDG_RUNTIME_DIR"
"$bin/VetrixTool" ENG --quit-after-show >/dev/null 2>&1 # warm the file cache
for _ in $(seq "$runs"); do
    /usr/bin/time -f '%e %M' -o "$tmp/one" "$bin/VetrixTool" ENG --quit-after-show >/dev/null 2>&1
    cat "$tmp/one" >>"$tmp/all"
done
median() { sort -n | awk '{a[NR]=$1} END {print a[int((NR+1)/2)]}'; }
secs=$(awk '{print $1}' "$tmp/all" | median)
kib=$(awk '{print $2}' "$tmp/all" | median)
mib=$(awk -v k="$kib" 'BEGIN {printf "%.1f", k/1024}')
echo "start-up: median ${secs} s to the main window shown (target 0.5 s), peak memory ${mib} MB (target 80 MB), $runs runs"
"$bin/bench_resourceloop"
