#!/usr/bin/env bash
# fuzz/run-all.sh SECONDS   fuzzes every target for SECONDS each, two at a time (the machine has
# two cores), and prints one line per target: executions, corpus size, and crashes found. The
# full output of each run is kept in build-fuzz/logs/TARGET.log.
set -euo pipefail
seconds=${1:?usage: fuzz/run-all.sh SECONDS}
root=$(cd "$(dirname "$0")/.." && pwd)
targets=(fuzz_analyze fuzz_parse_ranges fuzz_cli_args fuzz_parse_size fuzz_operation_parameters
         fuzz_output_rule fuzz_metadata_info fuzz_task_records fuzz_type1_reader
         fuzz_jbig2_encoder)
logs="$root/build-fuzz/logs"
mkdir -p "$logs"

# Build (and try for a second) first, one target at a time, so the runs below start together.
for target in "${targets[@]}"; do
    "$root/fuzz/run.sh" "$target" 1 >"$logs/$target.log" 2>&1 || { cat "$logs/$target.log" >&2; exit 1; }
done

run() { "$root/fuzz/run.sh" "$1" "$seconds" >"$logs/$1.log" 2>&1 || true; }
for ((i = 0; i < ${#targets[@]}; i += 2)); do
    run "${targets[i]}" &
    if ((i + 1 < ${#targets[@]})); then run "${targets[i + 1]}" & fi
    wait
done

printf '%-28s %14s %8s %s\n' target executions corpus crashes
for target in "${targets[@]}"; do
    log="$logs/$target.log"
    runs=$(grep -o 'stat::number_of_executed_units: *[0-9]*' "$log" | grep -o '[0-9]*$' || echo '?')
    units=$(ls "$root/build-fuzz/corpus/$target" 2>/dev/null | wc -l)
    crashes=$(ls "$root/build-fuzz/artifacts" 2>/dev/null | grep -c "^$target-" || true)
    printf '%-28s %14s %8s %s\n' "$target" "$runs" "$units" "$crashes"
done
