#!/usr/bin/env bash
# Which commit a change is measured from.
. "$(dirname "$0")/checks.sh"
command -v git >/dev/null || exit 77
export GIT_AUTHOR_NAME=tester GIT_AUTHOR_EMAIL=tester@example.org GIT_COMMITTER_NAME=tester
export GIT_COMMITTER_EMAIL=tester@example.org GIT_CONFIG_GLOBAL=/dev/null GIT_CONFIG_NOSYSTEM=1
unset VIREO_CI_BASE

commit() {
    echo "// $1" >"$1.cpp"
    git add -A
    git commit --quiet -m "$1"
    git rev-parse HEAD
}

git init --quiet --initial-branch=main .
mkdir scripts
cp "$root/scripts/lint" scripts/lint
first=$(commit first)
expect_equal "a single commit has no base" "$(scripts/lint base)" ""
expect_equal "all its files are the change" "$(scripts/lint files)" "first.cpp"

second=$(commit second)
third=$(commit third)
expect_equal "in a line of commits it is the one before" "$(scripts/lint base)" "$second"
expect_equal "the change is what came since" "$(scripts/lint files)" "third.cpp"
expect_equal "unless a base is given" "$(VIREO_CI_BASE=$first scripts/lint base)" "$first"
! VIREO_CI_BASE=nowhere scripts/lint base >/dev/null 2>&1 || fail "an unknown base passed"

git update-ref refs/remotes/origin/main "$first"
expect_equal "it is origin/main where that is behind" "$(scripts/lint base)" "$first"
git update-ref refs/remotes/origin/main "$third"
expect_equal "but not where it is what is checked out" "$(scripts/lint base)" "$second"

echo "// changed" >first.cpp
echo "// new" >new.h
rm second.cpp
expect_equal "what is not committed belongs to it, what is gone does not" \
    "$(scripts/lint files | tr '\n' ' ')" "first.cpp new.h third.cpp "
git checkout --quiet . && rm new.h

git checkout --quiet -b side "$second"
commit other >/dev/null
git update-ref refs/remotes/origin/main "$third"
expect_equal "a branch that has left origin/main goes by its own commits" "$(scripts/lint base)" "$second"
git checkout --quiet main
git merge --quiet --no-ff -m merged side
merge=$(git rev-parse HEAD)
git update-ref refs/remotes/origin/main "$merge"
expect_equal "of a merge it is the first parent" "$(scripts/lint base)" "$third"
commit fourth >/dev/null
commit fifth >/dev/null
git update-ref refs/remotes/origin/main HEAD
expect_equal "after a merge it is the merge" "$(scripts/lint base)" "$merge"

git clone --quiet --depth 1 "file://$scratch" shallow
expect_equal "a clone without a past has no base" "$(shallow/scripts/lint base)" ""
finish
