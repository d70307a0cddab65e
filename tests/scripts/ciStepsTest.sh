#!/usr/bin/env bash
. "$(dirname "$0")/checks.sh"

# run_steps LINES [VARIABLE=VALUE...]: sets output and status.
run_steps() {
    local lines=$1
    shift
    printf 'set -euo pipefail\n. %q\n%s\n' "$root/.ci/steps.sh" "$lines" >steps
    status=0
    output=$(env "$@" bash steps 2>&1) || status=$?
}

run_steps 'step one true; addition two true'
expect_equal "a run that passes" $status 0
expect_contains "it says so" "$output" "ci: passed"
times=$(grep -E '^    [0-9]+ min [0-9]{2} s  ' <<<"$output" | sed 's/.* s  //' | tr '\n' ' ')
expect_equal "it says how long each took" "$times" "one two "
expect_lacks "nothing was left out" "$output" "left out"

run_steps 'step bad bash -c "exit 3"; step never touch never'
expect_equal "a step that fails ends the run with its status" $status 3
[ ! -e never ] || fail "the run went on"
expect_contains "it is named" "$output" "bad (status 3)"
expect_lacks "such a run does not pass" "$output" "passed"

run_steps 'step a true; step ended bash -c "kill -TERM \$PPID"; step never touch never'
expect_equal "a run that is ended by a signal fails" $status 143
expect_lacks "it does not pass" "$output" "passed"

run_steps 'addition bad false'
expect_equal "an addition that fails ends the run" $status 1
run_steps 'addition odd bash -c "exit 124"'
expect_equal "also with the status of a command whose time is over" $status 124

run_steps 'addition slow sleep 60; addition late touch late; step after touch after' ADDITION_SECONDS=1
expect_equal "what does not fit is no failure" $status 0
expect_contains "what was ended is left to the night" "$output" "    slow: it did not end within 0 min 01 s; .ci/nightly does it"
expect_contains "and so is what was not begun" "$output" "    late: the time of all additions is over; .ci/nightly does it"
[ ! -e late ] || fail "an addition began after the time of all"
[ -e after ] || fail "a step was left out with the additions"

run_steps 'step long sleep 1; addition late touch late; step after touch after_long' RUN_SECONDS=1
expect_contains "additions have what the steps leave of the run" "$output" "    late: the time of all additions is over"
[ ! -e late ] || fail "an addition began after the time of the run"
[ -e after_long ] || fail "a step was left out with the additions"

run_steps 'addition --at-most 1 slow sleep 60; addition next touch next' ADDITION_SECONDS=60
expect_contains "an addition may be given a part of the time" "$output" "    slow: it did not end within 0 min 01 s"
[ -e next ] || fail "the part was taken for the whole"

run_steps 'addition --at-most 0 long touch long' ADDITION_SECONDS=0
[ -e long ] || fail "without a limit an addition was left out"

for limit in 60 0; do
    run_steps 'addition long sleep 2; steps=$(seconds_of_steps); [ $steps -le $((SECONDS - 2)) ]' ADDITION_SECONDS=$limit
    expect_equal "additions of at most $limit seconds are not counted as steps" $status 0
done
expect_lacks "and no step is left out for them" "$(cat "$root/.ci/run")" '$SECONDS'

run_steps 'step bad false; step on touch on' KEEP_GOING=yes
expect_equal "a run that keeps going fails in the end" $status 1
[ -e on ] || fail "it did not keep going"
expect_contains "it names what failed" "$output" "bad (status 1)"

run_steps 'leave "tests for X" "there is no X"'
expect_contains "what is left out is said at the end" "$output" "    tests for X: there is no X"

# Nothing that .ci/run may leave out is missing at night.
names_of() { sed -nE 's/^addition (--at-most [0-9]+ )?"([^"]*)".*/\2/p' "$root/.ci/$1"; }
[ -n "$(names_of run)" ] || fail "there are no additions"
while read -r name; do
    names_of nightly | grep -qxF "$name" || fail ".ci/nightly does not do '$name', which .ci/run may leave to it"
done < <(names_of run)
finish
