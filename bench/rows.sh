# Sourced by the benchmark scripts. `row TASK OURS_S OURS_KB PEER PEER_S PEER_KB GOAL [MEMORY_GOAL]`
# appends one
# comparison to the file named by QUILLET_BENCH_ROWS (tab-separated) when bench/compare.sh runs
# the scripts; on its own a script only prints its report. MEMORY_GOAL is a ratio of peak memory
# ("<= 1.50") or a ceiling ("< 120 MB").
row() {
    [[ -n "${QUILLET_BENCH_ROWS:-}" ]] || return 0
    local IFS=$'\t'
    echo "$*" >>"$QUILLET_BENCH_ROWS"
}

# `in_turn N A B` runs the commands A and B (each a shell function or program that prints
# "seconds peak-KB" of one run) in turn, A B A B ..., N times each, and prints "A_s A_KB B_s B_KB":
# the median run of each side. Taking turns lets both sides meet the same drift of a shared
# machine; running one side's rounds and then the other's does not.
in_turn() {
    local n=$1 a=$2 b=$3 i
    local as=() bs=()
    for ((i = 0; i < n; i++)); do
        as+=("$($a)")
        bs+=("$($b)")
    done
    local middle=$(((n + 1) / 2))
    echo "$(printf '%s\n' "${as[@]}" | sort -n | sed -n "${middle}p") $(printf '%s\n' "${bs[@]}" | sort -n | sed -n "${middle}p")"
}

# `quillet_built` builds quillet (unless QUILLET_BENCH_NO_BUILD is set) and sets `quillet` to the
# binary; `work_folder` sets `work` to a fresh folder removed when the script exits. Both read
# `root`, the checkout, which the sourcing script sets first.
quillet_built() {
    [[ -n "${QUILLET_BENCH_NO_BUILD:-}" ]] || "$root/scripts/build.sh" quillet
    quillet="$root/${QUILLET_BUILD_DIR:-build}/QuilletKit/quillet"
}
work_folder() {
    work=$(mktemp -d)
    trap 'rm -rf "$work"' EXIT
}
