# Debian packages, for the scripts beside this file, which source it.

say() { echo "${0##*/}: $*"; }

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

# apt-get, after other package managers: it would give up at once where one of them reads the lists. Who is waited for is
# said; after VIREO_LOCK_TIMEOUT seconds, 300 at first, who is in the way.
apt() {
    local errors lock told='' deadline=$((SECONDS + ${VIREO_LOCK_TIMEOUT:-300})) status=0
    errors=$(mktemp)
    until as_root env DEBIAN_FRONTEND=noninteractive LC_ALL=C apt-get -q -y "$@" 2>"$errors"; do
        lock=$(sed -n '/^E: Could not get lock /{s///p;q}' "$errors")
        if [ -z "$lock" ]; then
            status=1
        elif [ $SECONDS -ge $deadline ]; then
            say "gives up: $(holder_of "$lock")" >&2
            status=1
        elif [ -z "$told" ]; then
            say "waiting for another package manager: $(holder_of "$lock")" >&2
            told=yes
        fi
        [ $status = 0 ] || break
        sleep 1
    done
    cat "$errors" >&2
    rm "$errors"
    return $status
}

# holder_of "FILE. It is held by process PID (NAME)": the same with the whole command; what apt-get does not know is not said.
holder_of() {
    local file=${1%%. It is held *} pid
    pid=$(sed -nE 's/.* held by process ([0-9]+).*/\1/p' <<<"$1")
    if [ -n "$pid" ]; then
        echo "$file is held by process $pid, $(command_of "$pid")"
    else
        echo "$1"
    fi
}

command_of() {
    { tr '\0' ' ' <"/proc/$1/cmdline"; } 2>/dev/null | sed 's/ $//' | grep . || echo "which has ended since"
}

installed() {
    [ "$(dpkg-query -W -f '${db:Status-Status}' "$1" 2>/dev/null)" = installed ]
}

missing_of() {
    local package
    for package in "$@"; do
        installed "$package" || echo "$package"
    done
}

known_to_apt() {
    LC_ALL=C apt-cache policy "$1" 2>/dev/null | grep 'Candidate: [^(]' >/dev/null
}

# Ends the script, saying what is missing, where nobody may install it.
require_root_for() {
    [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null || return 0
    say "installing needs root or sudo; let someone who may do so install:" >&2
    printf '    %s\n' "$@" >&2
    exit 1
}

# The machine's own Debian entry, in the one format or the other, as "URI<tab>signing key".
debian_entry() {
    local codename=$1
    awk -v suite="$codename" '
        BEGIN { RS = ""; FS = "\n" }
        {
            uri = key = ""; suites = components = " "; enabled = 1
            for (i = 1; i <= NF; ++i) {
                value = $i; sub(/^[^:]*:[ \t]*/, "", value)
                if ($i ~ /^URIs:/) { split(value, uris, /[ \t]+/); uri = uris[1] }
                if ($i ~ /^Suites:/) suites = " " value " "
                if ($i ~ /^Components:/) components = " " value " "
                if ($i ~ /^Signed-By:/) key = value
                if ($i ~ /^Enabled:[ \t]*no/) enabled = 0
            }
            if (enabled && index(suites, " " suite " ") && index(components, " main ")) { print uri "\t" key; exit }
        }' $(ls /etc/apt/sources.list.d/*.sources 2>/dev/null) /dev/null | grep . && return
    sed -nE "s@^deb[ \t]+(\[([^]]*)\][ \t]+)?([^ \t]+)[ \t]+${codename}[ \t]+(.*[ \t])?main([ \t].*)?\$@\3\t\2@p" \
        $(ls /etc/apt/sources.list /etc/apt/sources.list.d/*.list 2>/dev/null) /dev/null |
        sed -E 's@\t.*signed-by=([^ ]+).*@\t\1@; t; s@\t.*@\t@' | head -n 1 | grep .
}

# enable_sources FILE TYPE COMPONENTS: adds a sources file of the project's own, derived from the machine's Debian entry.
enable_sources() {
    local file=/etc/apt/sources.list.d/$1 type=$2 components=$3 codename entry uri key
    codename=$(. /etc/os-release && echo "${VERSION_CODENAME:-}")
    if ! entry=$(debian_entry "$codename"); then
        say "no Debian '$codename' entry in the package sources" >&2
        return 1
    fi
    IFS=$'\t' read -r uri key <<<"$entry"
    {
        echo "Types: $type"
        echo "URIs: $uri"
        echo "Suites: $codename"
        echo "Components: $components"
        [ -z "$key" ] || echo "Signed-By: $key"
    } | as_root tee "$file" >/dev/null
}
