# The steps of a run, for the scripts beside this file, which source it: what they are, how long each takes, and what was left
# out, which is said again at the end, whether the run passes or not.
#
#   step NAME COMMAND...       must pass
#   addition [--at-most SECONDS] NAME COMMAND...
#                              must pass, if it fits into the time that all additions have together, of which it may be given
#                              a part; what does not fit is left to .ci/nightly
#   leave NAME REASON          says that something was left out
#   seconds_of_steps           how long the run has taken so far, without its additions
#
# ADDITION_SECONDS is that time, of which they have what the steps leave of RUN_SECONDS; 0 is as long as they take. With
# KEEP_GOING=yes a step that fails does not end the run.
ADDITION_SECONDS=${ADDITION_SECONDS:-900}
RUN_SECONDS=${RUN_SECONDS:-3500}
KEEP_GOING=${KEEP_GOING:-no}
seconds_of_additions=0
step_times=()
steps_left=()
failed_steps=()

duration() { printf '%d min %02d s' $(($1 / 60)) $(($1 % 60)); }

seconds_of_steps() { echo $((SECONDS - seconds_of_additions)); }

leave() {
    steps_left+=("$1: $2")
    echo "ci: left out: $1: $2"
}

finish_step() {
    local name=$1 seconds=$2 status=$3
    step_times+=("$(duration "$seconds")  $name")
    echo "ci: $name: $(duration "$seconds")"
    [ "$status" != 0 ] || return 0
    failed_steps+=("$name (status $status)")
    [ "$KEEP_GOING" = yes ] || exit "$status"
}

step() {
    local name=$1 begin=$SECONDS status=0
    shift
    echo "ci: $name ..."
    "$@" || status=$?
    finish_step "$name" $((SECONDS - begin)) $status
}

# What is left for an addition that begins now, or 0 for all the time it takes.
time_of_addition() {
    local left=$((ADDITION_SECONDS - seconds_of_additions)) left_of_run=$((RUN_SECONDS - SECONDS))
    [ "$ADDITION_SECONDS" != 0 ] || left=0 left_of_run=0
    echo $((left < left_of_run ? left : left_of_run))
}

addition() {
    local begin=$SECONDS status=0 limit name seconds
    limit=$(time_of_addition)
    if [ "$1" = --at-most ]; then
        [ "$ADDITION_SECONDS" = 0 ] || [ "$2" -ge "$limit" ] || limit=$2
        shift 2
    fi
    name=$1
    shift
    if [ "$ADDITION_SECONDS" != 0 ] && [ "$limit" -le 0 ]; then
        leave "$name" "the time of all additions is over; .ci/nightly does it"
        return
    fi
    echo "ci: $name ..."
    timeout --kill-after=30 "$limit" "$@" || status=$?
    seconds=$((SECONDS - begin))
    if [ $status = 124 ] && [ $seconds -ge "$limit" ]; then
        leave "$name" "it did not end within $(duration "$limit"); .ci/nightly does it"
        status=0
    fi
    seconds_of_additions=$((seconds_of_additions + seconds))
    finish_step "$name" $seconds $status
}

summarise() {
    local status=$?
    trap - EXIT
    [ ${#failed_steps[@]} = 0 ] || [ $status != 0 ] || status=1
    echo "ci: times"
    [ ${#step_times[@]} = 0 ] || printf '    %s\n' "${step_times[@]}"
    if [ ${#steps_left[@]} -gt 0 ]; then
        echo "ci: left out"
        printf '    %s\n' "${steps_left[@]}"
    fi
    if [ ${#failed_steps[@]} -gt 0 ]; then
        echo "ci: failed"
        printf '    %s\n' "${failed_steps[@]}"
    fi
    [ $status != 0 ] || echo "ci: passed"
    exit $status
}
trap summarise EXIT
trap 'exit 129' HUP
trap 'exit 130' INT
trap 'exit 143' TERM
