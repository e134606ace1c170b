# Sourced by the benchmark scripts. `row TASK OURS_S OURS_KB PEER PEER_S PEER_KB GOAL` appends one
# comparison to the file named by QUILLET_BENCH_ROWS (tab-separated) when bench/compare.sh runs
# the scripts; on its own a script only prints its report.
row() {
    [[ -n "${QUILLET_BENCH_ROWS:-}" ]] || return 0
    local IFS=$'\t'
    echo "$*" >>"$QUILLET_BENCH_ROWS"
}
