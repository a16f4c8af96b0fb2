# shellcheck shell=bash
# What ./run, ./test and .ci/run share: the packages and the release build. To be sourced, from any folder.

root=$(dirname "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")")
build=$root/build/release

say() { printf '%s: %s\n' "${0##*/}" "$*"; }

fail() {
    printf '%s: error: %s\n' "${0##*/}" "$*" >&2
    exit 1
}

# The lines "package proof" of the groups given, from the one list.
packages_of() {
    local group
    for group in "$@"; do
        awk -v group="$group" '$1 == group { print $2, $3 }' "$root/packages.txt"
    done
}

is_debian() (
    ID=''
    # shellcheck source=/dev/null
    [[ ! -r /etc/os-release ]] || . /etc/os-release
    [[ $ID == debian ]]
)

# The packages of the groups given that Debian has not installed, one a line. Needs no network.
missing_packages() {
    local wanted
    wanted=$(packages_of "$@" | cut -d ' ' -f 1)
    # shellcheck disable=SC2086 # one word a package
    dpkg-query --show --showformat '${db:Status-Status} ${Package}\n' $wanted 2>/dev/null |
        awk -v wanted="$wanted" '
            $1 == "installed" { installed[$2] }
            END { count = split(wanted, names); for (i = 1; i <= count; i++) if (!(names[i] in installed)) print names[i] }'
}

# Runs a command as root: directly, or through sudo, which may ask for a password only where somebody can answer.
as_root() {
    if ((EUID == 0)); then
        "$@" </dev/null
    elif [[ -t 0 ]]; then
        sudo "$@" </dev/null
    else
        sudo -n "$@" </dev/null
    fi
}

install_packages() {
    local list="$*"
    local apt=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o Dpkg::Use-Pty=0 -o DPkg::Lock::Timeout=300)
    ((EUID == 0)) || command -v sudo >/dev/null ||
        fail "Debian packages are missing and there is no sudo; as root run: apt-get install $list"
    say "Installing the missing Debian packages: $list"
    as_root "${apt[@]}" update ||
        say "The package lists could not be brought up to date; going on with those that are here."
    as_root "${apt[@]}" install --no-install-recommends "$@" ||
        fail "Debian packages could not be installed (apt-get tells why above); as root run: apt-get install $list"
}

# On a Linux that is not Debian's: nothing is installed; every command that is not there is named with the Debian package
# it comes from. The libraries are CMake's to find (cmake/dependencies.cmake names them the same way).
require_commands() {
    local package proof missing=()
    while read -r package proof; do
        [[ $proof == - || $proof == *::* ]] || command -v "$proof" >/dev/null || missing+=("$package (command $proof)")
    done < <(packages_of "$@")
    ((${#missing[@]} == 0)) && return
    fail "This is no Debian, so nothing is installed for you. Missing, by their Debian names: $(join "${missing[@]}")." \
        "The libraries are looked for once these are there; the whole list: $root/packages.txt"
}

join() {
    local joined
    printf -v joined '%s, ' "$@"
    printf '%s' "${joined%, }"
}

# Sees to it that the packages of the groups given are there, or ends the script with the list of what is not.
ensure_packages() {
    local missing
    if is_debian; then
        mapfile -t missing < <(missing_packages "$@")
        ((${#missing[@]} == 0)) || install_packages "${missing[@]}"
    else
        require_commands "$@"
    fi
}

# Configures a preset unless that has been done; ninja itself runs cmake again when a CMakeLists.txt changes. A build
# folder that came here with a moved or copied source folder is begun afresh, for cmake refuses it.
configure() {
    local preset=$1 folder=$root/build/$1
    if [[ $folder/build.ninja -nt $root/CMakePresets.json ]] &&
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$folder/CMakeCache.txt" 2>/dev/null; then
        return
    fi
    say "Configuring build/$preset"
    rm -rf "$folder/CMakeCache.txt" "$folder/CMakeFiles"
    cmake -S "$root" --preset "$preset" ||
        fail "cmake could not configure build/$preset; its first error above names the cause."
}

# Builds a target of the release preset ("all" is everything).
build_release() {
    configure release
    say "Building $1 in build/release"
    cmake --build "$build" --parallel "$(nproc)" --target "$1" ||
        fail "The build failed; the first error above names the cause." \
            "After an upgrade of the compiler or of Qt, delete $build and try again."
}

# What clang-tidy and clazy need: the compile commands, and the headers that uic makes. Nothing is compiled.
prepare_lint() {
    configure tidy
    cmake --build "$root/build/tidy" --target forms >"$root/build/tidy/forms.log" ||
        fail "The forms' headers could not be made: $(tail -n 5 "$root/build/tidy/forms.log")"
}

# The source files of ours that belong to a target and whose compile command contains a text.
lint_sources() {
    awk -v needed="$1" -v built="$root/build/" '
        /^ *"command": / { has = needed == "" || index($0, needed) }
        /^ *"file": / { split($0, parts, "\""); if (has && index(parts[4], built) != 1) print parts[4] }
    ' "$root/build/tidy/compile_commands.json" | sort -u
}
