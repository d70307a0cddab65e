#!/usr/bin/env bash
# Which figures scripts/bench keeps. The programs that it builds and runs are stand-ins here.
. "$(dirname "$0")/checks.sh"
mkdir -p scripts docs build/bench/bin stand-ins
cp "$root/scripts/bench" "$root/scripts/replace-section" scripts
printf '# Figures\n\n## Floors\n\n| old |\n\n## First curve\n\n| stays |\n' >docs/figures.md
cp docs/figures.md before.md
for program in scripts/setup scripts/example-data stand-ins/cmake; do
    printf '#!/bin/sh\n' >"$program"
done
printf '#!/bin/sh\necho "| measured |"\n' >build/bench/bin/vireo-bench
printf '#!/bin/sh\nshift 2\nexec "$@"\n' >stand-ins/xvfb-run
chmod +x scripts/* stand-ins/* build/bench/bin/*
export PATH="$scratch/stand-ins:$PATH"

scripts/bench --quick >output
expect_contains "a quick run prints its table" "$(cat output)" "| measured |"
cmp docs/figures.md before.md || fail "a quick run changed the figures"
expect_contains "it keeps it beside the programs" "$(cat build/bench/figures.md)" "| measured |"
scripts/bench floors -- --benchmark_filter=head >/dev/null
cmp docs/figures.md before.md || fail "a part of a table took the place of the whole"

scripts/bench >/dev/null
expect_equal "a whole run writes its section" "$(cat docs/figures.md)" "$(sed 's/old/measured/' before.md)"

printf '#!/bin/sh\necho "| half |"; exit 1\n' >build/bench/bin/vireo-bench
cp docs/figures.md before.md
! scripts/bench >/dev/null || fail "a program that failed passed"
cmp docs/figures.md before.md || fail "what is left of a program that failed was written"
finish
