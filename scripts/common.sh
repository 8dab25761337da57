# What ./run and ./check share: missing packages, building, and showing the output of work only where it helps.
# Sourced by both, with $root set to the folder of the clone.

fail() {
    printf '%s: %s\n' "$(basename "$0")" "$1" >&2
    exit 1
}

# locked COMMAND...: several at once in the same clone take turns. What fails in COMMAND ends this script.
locked() {
    mkdir -p "$root/build"
    (flock 9 && "$@") 9> "$root/build/lock"
}

# quietly WHAT COMMAND...: on a terminal shows the work, one line that changes for a compiler's progress; elsewhere
# keeps its output back and shows it only when it fails.
quietly() {
    local what=$1 log status=0
    shift
    if [ -t 2 ]; then
        "$@" 2>&1 < /dev/null | awk -v width="$(tput cols 2> /dev/null || echo 80)" '
            /no work to do/ { next }
            /^\[[0-9]+\/[0-9]+\]/ { printf "\r\033[K%s", substr($0, 1, width - 1); fflush(); progress = 1; next }
            { if (progress) print ""; progress = 0; print; fflush() }
            END { if (progress) printf "\r\033[K" }' >&2 || fail "$what failed."
        return
    fi
    log=$(mktemp) || fail "no temporary file can be made."
    "$@" > "$log" 2>&1 < /dev/null || status=$?
    [ $status -eq 0 ] || grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "$log" >&2
    rm -f "$log"
    [ $status -eq 0 ] || fail "$what failed."
}

# need_packages NEED...: installs what scripts/packages.txt lists for each and is not installed. The answer is
# remembered, until the list or the installed packages change.
need_packages() {
    local need list=$root/scripts/packages.txt status=/var/lib/dpkg/status remembered unknown=()
    for need in "$@"; do
        remembered=$root/build/packages/$need
        if [ ! "$remembered" -nt "$list" ] || [ ! "$remembered" -nt "$status" ]; then
            unknown+=("$need")
        fi
    done
    [ ${#unknown[@]} -gt 0 ] || return 0
    if ! command -v apt-get > /dev/null || ! command -v dpkg-query > /dev/null; then
        # Not a Debian machine: the same tools may be there under other names, and CMake tells what is not.
        return 0
    fi

    local package missing=()
    for package in $(for need in "${unknown[@]}"; do sed -n "s/^$need //p" "$list"; done); do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2> /dev/null)" = installed ] || missing+=("$package")
    done
    if [ ${#missing[@]} -gt 0 ]; then
        install_packages "${missing[@]}"
    fi
    mkdir -p "$root/build/packages"
    for need in "${unknown[@]}"; do
        : > "$root/build/packages/$need"
    done
}

install_packages() {
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        sudo -n true 2> /dev/null ||
            fail "these Debian packages are missing, and installing them takes rights that you do not have here: $*
Type this, then try again:
    sudo apt-get update && sudo apt-get install --no-install-recommends $*"
        as_root=(sudo -n)
    fi
    echo "Installing Debian packages: $*" >&2
    local apt=("${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get -q -o DPkg::Lock::Timeout=300)
    quietly "apt-get update" "${apt[@]}" update
    quietly "Installing $*" "${apt[@]}" install -y --no-install-recommends "$@"
}

# configure PRESET OPTION...: configures build/PRESET; the tests are left out unless an option or an earlier time says
# otherwise.
configure() {
    local preset=$1
    shift
    forget_moved "$preset"
    [ -f "$root/build/$preset/build.ninja" ] || set -- -DOMBRIX_BUILD_TESTS=OFF "$@"
    # --preset is looked up from the current folder.
    quietly "Configuring build/$preset" env -C "$root" cmake --preset "$preset" "$@"
}

# forget_moved PRESET: removes a build folder that came along with a clone that was moved or copied. It would build the
# sources of the old place.
forget_moved() {
    local folder=$root/build/$1
    [ ! -f "$folder/CMakeCache.txt" ] || grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt" ||
        rm -rf "$folder"
}

# build PRESET PARTS TARGET...: builds the targets in build/PRESET, which is configured when that has not been done with
# all parts: "TESTS", "TESTS BENCH", or "" where none is needed.
build() {
    local preset=$1 part folder=$root/build/$1 options=()
    forget_moved "$preset"
    for part in $2; do
        grep -qs "^OMBRIX_BUILD_$part:BOOL=ON" "$folder/CMakeCache.txt" || options+=("-DOMBRIX_BUILD_$part=ON")
    done
    shift 2
    if [ ! -f "$folder/build.ninja" ] || [ ${#options[@]} -gt 0 ]; then
        configure "$preset" "${options[@]}"
    fi
    quietly "Building build/$preset" cmake --build "$folder" --target "$@"
}
