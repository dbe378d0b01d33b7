#!/usr/bin/env bash
# Installs what is missing, builds the benches optimised, runs them, and prints machine, date and one
# table of figures. About four minutes. Load on the machine spoils the figures: it is printed, too.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/tools/prepare.sh"

benches=(codec startup refresh report)
drivers=(read event) # of the server's binary
results=$(mktemp -d)
trap 'rm -rf "$results"' EXIT

load() { cut -d' ' -f1 /proc/loadavg; }

need_packages "${build_packages[@]}" libbenchmark-dev
build bench ied-server "${drivers[@]/%/_bench}" "${benches[@]/%/_bench}"
cd "$root"

before=$(load)
for bench in "${drivers[@]}"; do
    "build/bench/bin/${bench}_bench" >"$results/$bench.tsv"
done
for bench in "${benches[@]}"; do
    "build/bench/bin/${bench}_bench" --benchmark_format=json --benchmark_repetitions=7 \
        --benchmark_min_time=0.1 --benchmark_report_aggregates_only=true \
        >"$results/$bench.json" 2>"$results/log" || die "$(cat "$results/log")"
done

model=$(sed -n 's/^model name[^:]*: *//p' /proc/cpuinfo | head -n 1)
echo "$model, $(nproc) cores, $(uname -sr), $(c++ --version | head -n 1), $(date -u +'%F %H:%M') UTC"
echo "load $before before, $(load) after"
echo
python3 bench/table.py "$results"
