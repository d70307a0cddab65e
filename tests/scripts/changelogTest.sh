#!/usr/bin/env bash
. "$(dirname "$0")/checks.sh"
mkdir scripts changes
cp "$root/scripts/changelog" scripts/changelog
echo "# A note for each change" >changes/README.md

printf '# Changelog\n\n## 0.2, not yet released\n\n- vireo: old.\n\n## 0.1\n\n- vireo: first.\n' >CHANGELOG.md
cp CHANGELOG.md unchanged
scripts/changelog
expect_equal "without notes the changelog stays" "$(cat CHANGELOG.md)" "$(cat unchanged)"

printf -- '- vireo: a C:\\temp & more,\n  in two lines.\n' >changes/b.md
printf -- '- tavo base: earlier by name.\n' >changes/a.md
expected='# Changelog

## 0.2, not yet released

- vireo: old.
- tavo base: earlier by name.
- vireo: a C:\temp & more,
  in two lines.

## 0.1

- vireo: first.'
expect_equal "notes stand at the end of the newest section" "$(scripts/changelog --show)" "$expected"
expect_equal "showing changes nothing" "$(cat CHANGELOG.md)" "$(cat unchanged)"
scripts/changelog
expect_equal "what was shown is written" "$(cat CHANGELOG.md)" "$expected"
expect_equal "and the notes are gone, but not how to write them" "$(ls changes)" "README.md"

printf '# Changelog\n\n## 0.1, not yet released\n\n- vireo: first.\n' >CHANGELOG.md
printf -- '- vireo: second.\n' >changes/c.md
expect_equal "the newest section may be the only one" "$(scripts/changelog --show | tail -n 2 | tr '\n' ' ')" \
    "- vireo: first. - vireo: second. "

printf '# Changelog\n\n## 0.1\n\n- vireo: first.\n' >CHANGELOG.md
cp CHANGELOG.md unchanged
! output=$(scripts/changelog 2>&1) || fail "a released version took a note"
expect_contains "it is named" "$output" "'## 0.1'"
expect_equal "nothing is written then" "$(cat CHANGELOG.md)" "$(cat unchanged)"
[ -e changes/c.md ] || fail "the note is gone"

for part in vireo libvireoshow 'tavo base' 'tavo points' 'tavo wgl' vireo-view vireo-info Python Windows Building; do
    printf -- "- $part: text.\n" >changes/d.md
    scripts/changelog --check || fail "this was refused: $part"
    grep -qE "^\|.*\b$part\b.* \|" "$root/changes/README.md" || fail "changes/README.md does not say: $part"
done
for text in 'no dash' '- \n' '-no blank' '- vireo: good\nbad' '' "- vireo: $(printf 'x%.0s' {1..200})" '- no part.' \
    '- Buildings: text.' '- Documentation: text.' '- vireo: good.\n- tavo: bad.'; do
    printf -- "$text" >changes/d.md
    ! output=$(scripts/changelog --check 2>&1) || fail "this passed for a note: $text"
    expect_contains "the bad note is named" "$output" "changes/d.md"
done
finish
