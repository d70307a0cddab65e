#!/usr/bin/env bash
# How a part of the benchmarks gets its figures into their document.
. "$(dirname "$0")/checks.sh"
document='# Figures

By hand.

## Floors

| old \n & |

## Peers

| stays |'
printf '%s\n' "$document" >figures.md

printf '| new \\n & |\n' | "$root/scripts/replace-section" figures.md Floors
expect_equal "a section in the middle" "$(cat figures.md)" "${document/old/new}"

printf '| last |\n' | "$root/scripts/replace-section" figures.md Peers
expect_equal "the last section" "$(tail -n 3 figures.md)" "$(printf '## Peers\n\n| last |')"

printf '| more |\n' | "$root/scripts/replace-section" figures.md Memory
expect_equal "a section that is new" "$(tail -n 5 figures.md)" "$(printf '| last |\n\n## Memory\n\n| more |')"
expect_equal "what stands above is by hand" "$(sed -n 3p figures.md)" "By hand."

cp figures.md before.md
printf '| more |\n' | "$root/scripts/replace-section" figures.md Memory
cmp figures.md before.md || fail "the same text changes the document"
finish
