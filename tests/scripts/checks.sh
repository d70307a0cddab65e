# For the tests of scripts, which source it: the root of the tree and an empty scratch folder come as arguments.
set -euo pipefail
root=$1
scratch=$2
rm -rf "$scratch"
mkdir -p "$scratch"
cd "$scratch"
failures=0

fail() {
    echo "FAILED: $*"
    failures=$((failures + 1))
}

expect_equal() {
    [ "$2" = "$3" ] || fail "$1: '$2' instead of '$3'"
}

expect_contains() {
    [[ "$2" = *"$3"* ]] || fail "$1: no '$3' in: $2"
}

expect_lacks() {
    [[ "$2" != *"$3"* ]] || fail "$1: '$3' in: $2"
}

finish() {
    [ $failures = 0 ] || exit 1
}
