# What ./run, ./test and .ci/run share: packages, and one build at a time. Sourced, not run; needs
# `root`, the top of the tree.

say() { printf '%s\n' "$@" >&2; }

die() {
    say "$@"
    exit 1
}

build_packages=(cmake ninja-build g++ ccache libexpat1-dev zlib1g-dev libcli11-dev libgtest-dev python3)
test_packages=(libxml2-utils)
format_packages=(clang-format)
fuzz_packages=(clang libclang-rt-14-dev)

# Runs a command with its output in a log; on failure shows the end of the log.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    if [ "$status" -ne 0 ]; then
        say "$* failed:"
        tail -n 40 "$log" >&2
    fi
    rm -f "$log"
    return "$status"
}

installed() {
    dpkg-query -W -f '${Status}' "$1" 2>/dev/null | grep -q '^install ok installed$'
}

# Installs what is in `missing`; arguments are a command that gives root. Package lists that are absent
# or too old make an install fail: then they are fetched first.
apt_install() {
    local get=("$@" env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=600)
    if compgen -G '/var/lib/apt/lists/*Packages*' >/dev/null &&
        "${get[@]}" install --no-install-recommends "${missing[@]}" >/dev/null 2>&1; then
        return 0
    fi
    local attempt
    for attempt in 1 2 3 4 5 6; do
        "${get[@]}" update >/dev/null 2>&1 && break
        [ "$attempt" -eq 6 ] || sleep 5 # another one holds the lock of the lists
    done
    quietly "${get[@]}" install --no-install-recommends "${missing[@]}"
}

# Installs those of the given Debian packages that are missing.
need_packages() {
    missing=()
    command -v dpkg-query >/dev/null || return 0 # no Debian: the configure step says what it lacks
    local package
    for package in "$@"; do
        installed "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0
    say "installing ${missing[*]}"
    if [ "$(id -u)" -eq 0 ]; then
        apt_install || die "the packages could not be installed"
    elif command -v sudo >/dev/null && { sudo -n true 2>/dev/null || [ -t 0 ]; }; then
        apt_install sudo || die "the packages could not be installed"
    else
        die "These packages are missing, and installing them needs root or sudo:" \
            "    apt-get install ${missing[*]}"
    fi
}

# Configures and builds a preset; other arguments are targets. Two scripts at once take turns.
build() {
    local preset=$1 folder=$root/build/$1
    shift
    mkdir -p "$folder"
    (
        cd "$root"
        flock 9
        quietly cmake --preset "$preset"
        if [ -t 2 ]; then
            cmake --build "$folder" ${*:+--target "$@"} >&2
        else
            say "building $preset"
            quietly cmake --build "$folder" ${*:+--target "$@"}
        fi
    ) 9>"$folder/.lock"
}
