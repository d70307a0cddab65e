# Debian packages, for the scripts beside this file, which source it.

say() { echo "${0##*/}: $*"; }

as_root() {
    if [ "$(id -u)" = 0 ]; then "$@"; else sudo "$@"; fi
}

apt() {
    as_root env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 "$@"
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
