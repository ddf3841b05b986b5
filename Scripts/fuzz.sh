#!/usr/bin/env bash
# Installs what is missing, builds the fuzzers with clang, and lets each look for inputs that break its claims.
#
#     Scripts/fuzz.sh [SECONDS]      SECONDS for each fuzzer, 600 if nothing is said; as many run at a time as there
#                                    are processors
#     Scripts/fuzz.sh minimise       makes the checked-in corpora anew: few inputs that reach what all reach
#
# It fails on a finding. The input that shows it stands in build/fuzz/findings; what was found out on the way is kept
# in build/fuzz/corpus, and the next run goes on from there.
set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
build=$root/build/fuzz
task=${1:-600}
# Longer inputs find no more and are slower to change.
longest=4096
# A reader that asks for more at once than this has believed an input of that length.
largestRequestMb=16

fail()
{
    printf 'fuzz.sh: %s\n' "$*" >&2
    exit 1
}

# Runs the engine of a fuzzer, given by its source, over its inputs; further arguments go before them.
engine()
{
    local source=$1 name subject folder dictionary
    shift
    name=$(basename -- "$source" .cpp)
    subject=${name%Fuzz}
    folder=$(dirname -- "$source")
    dictionary=$folder/$subject.dict
    [[ ! -f $dictionary ]] || set -- "-dict=$dictionary" "$@"
    "$build/bin/$name" -max_len=$longest -malloc_limit_mb=$largestRequestMb -timeout=10 \
        -artifact_prefix="$build/findings/$subject-" "$@" \
        "$build/corpus/$subject" "$folder/Corpus/$subject"
}

# Lets a fuzzer look for a time. The log is kept, and shown if there is a finding.
look()
{
    local source=$1 seconds=$2 subject log
    subject=$(basename -- "$source" Fuzz.cpp)
    log=$build/findings/$subject.log
    if engine "$source" -max_total_time="$seconds" -print_final_stats=1 >"$log" 2>&1; then
        printf '%s: no finding. %s\n' "$subject" "$(grep -E '^Done|cov:' "$log" | tail -n 2 | tr '\n' ' ')"
        return
    fi
    tail -n 60 -- "$log"
    printf '%s: a finding. The input is named above; the whole log is %s\n' "$subject" "$log"
    return 1
}

minimise()
{
    local source=$1 subject corpus kept
    subject=$(basename -- "$source" Fuzz.cpp)
    corpus=$(dirname -- "$source")/Corpus/$subject
    # By the places they reach, not by how often: the corpora stay small, and the engine's own stands in the build tree.
    kept=$(mktemp --directory -- "$build/kept.XXXXXX")
    "$build/bin/${subject}Fuzz" -set_cover_merge=1 -use_counters=0 -max_len=$longest "$kept" "$build/corpus/$subject" "$corpus" \
        >"$build/findings/$subject.log" 2>&1 || fail "the inputs of $subject could not be merged: see $build/findings/$subject.log"
    rm -rf -- "$corpus"
    mv -- "$kept" "$corpus"
    chmod 755 -- "$corpus"
    du --bytes --summarize -- "$corpus"
}

[[ $task == minimise || $task =~ ^[1-9][0-9]*$ ]] || fail "'$task' is no number of seconds. Say one, or minimise."

"$root/Scripts/install-dependencies.sh" fuzz
cd -- "$root"
cmake --preset fuzz || fail "preset fuzz could not be configured; the reason stands above."
cmake --build --preset fuzz || fail "preset fuzz could not be built; the first error stands above."

mapfile -t sources < <(find "$root/Fuzz" -name '*Fuzz.cpp' | sort)
mkdir -p -- "$build/findings"
for source in "${sources[@]}"; do
    subject=$(basename -- "$source" Fuzz.cpp)
    mkdir -p -- "$build/corpus/$subject"
    [[ ! -x $build/bin/${subject}Seeds ]] || "$build/bin/${subject}Seeds" "$build/corpus/$subject"
done

if [[ $task == minimise ]]; then
    for source in "${sources[@]}"; do
        minimise "$source"
    done
    exit 0
fi

findings=0
running=0
for source in "${sources[@]}"; do
    if [[ $running -ge $(nproc) ]]; then
        wait -n || findings=1
        running=$((running - 1))
    fi
    look "$source" "$task" &
    running=$((running + 1))
done
for (( ; running > 0; running--)); do
    wait -n || findings=1
done
[[ $findings -eq 0 ]] || fail "there are findings; they are shown above."
