# shellcheck shell=bash
# What the program for Windows is linked with: Qt, static, from the sources that Debian's own Qt is made of, built once into a
# cache outside of the tree, and pugixml's sources. To be sourced behind setup.sh.

windows_cache=${XDG_CACHE_HOME:-$HOME/.cache}/varda
windows_toolchain=${root:?}/cmake/mingw-w64.cmake

# What no control of the program needs stays out: it would be time to build and bytes to give away. Whatever else a library
# may come from is Qt's own copy, so that the program needs nothing beside itself.
qt_options() {
    local name
    printf '%s\n' -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF -DQT_BUILD_EXAMPLES=OFF -DQT_BUILD_TESTS=OFF \
        -DQT_HOST_PATH=/usr "-DQT_HOST_PATH_CMAKE_DIR=/usr/lib/$(gcc -print-multiarch)/cmake" \
        -DQT_QPA_DEFAULT_PLATFORM=windows -DINPUT_opengl=no -DFEATURE_testlib=ON
    for name in network sql dbus xml concurrent printsupport opengl vulkan icu zstd glib direct2d directwrite3 tabletevent \
        pdf androiddeployqt jpeg gif mimetype_database system_zlib system_png system_freetype system_harfbuzz system_pcre2 \
        system_doubleconversion; do
        printf '%s\n' "-DFEATURE_$name=OFF"
    done
}

# The host's Qt tools write sources for a Qt of their own version, so the sources have to be of that one.
qt_source_version() {
    dpkg-query --show --showformat '${source:Version}' qt6-base-dev 2>/dev/null
}

# Everything that makes one Qt differ from another.
qt_key() {
    {
        qt_source_version
        qt_options
        grep -v '^#' "$windows_toolchain"
        x86_64-w64-mingw32-g++-posix -dumpfullversion
    } | sha256sum | cut -c 1-12
}

# Where this Qt is, or would be. Its own files name the folder: it cannot be moved.
windows_qt_folder() {
    local version
    version=$(qt_source_version | sed -E 's/[^0-9.]+/-/g') || return
    printf '%s/qt-%s-%s\n' "$windows_cache" "$version" "$(qt_key)"
}

# Written when all is in its place.
is_built() { [[ -f $1/built ]]; }

# debian_source_lists INTO: those of the machine's lists that are Debian's own, by their host or by Debian's key as its mirrors
# have it, as lists of sources. Another host may have no sources, or others of the same name.
debian_source_lists() {
    local into=$1 list
    local host='://([^/ ]*[.])?debian[.]org(/| |$)' key='debian-archive-keyring'
    for list in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
        [[ -f $list ]] || continue
        case $list in
        *.sources) grep -v '^#' "$list" | awk -v RS= -v ORS='\n\n' -v wanted="$host|$key" '$0 ~ wanted' |
            sed 's/^Types:.*/Types: deb-src/' ;;
        *.list) grep -E "^deb .*($host|$key)" "$list" | sed 's/^deb /deb-src /' ;;
        esac >"$into/${list##*/}" || true # none is none
    done
    find "$into" -maxdepth 1 -type f -empty -delete
    [[ -n $(find "$into" -maxdepth 1 -type f) ]] ||
        fail "No list of Debian's is among those of this machine (/etc/apt/sources.list): its sources could not be had."
}

# download_sources PACKAGE VERSION FOLDER: Debian's own. The machine's list of sources may name no sources, and stays as it is:
# its own lists are read as ones of sources, in a folder of our own.
download_sources() {
    local package=$1 version=$2 into=$3 apt=$3/apt
    mkdir -p "$apt"/{parts,lists/partial,archives/partial}
    debian_source_lists "$apt/parts"
    local options=(-q -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$apt/parts"
        -o "Dir::State::lists=$apt/lists" -o "Dir::Cache=$apt" -o APT::Sandbox::User=)
    apt-get "${options[@]}" update || fail "The lists of Debian's sources could not be had; apt-get tells why above."
    (cd "$into" && apt-get "${options[@]}" --download-only source "$package=$version") ||
        fail "The sources of $package $version could not be had; apt-get tells why above."
    rm -rf "$apt"
    (cd "$into" && dpkg-source --no-check --extract "$package"_*.dsc source >extract.log) ||
        fail "The sources of $package could not be unpacked: $(tail -n 3 "$into/extract.log")"
}

# Runs a build by ninja, and tells how far it is at each twentieth; what it says goes to a file.
build_with_progress() {
    local log=$1
    shift
    "$@" 2>&1 | tee "$log" | awk -v started="$(date +%s)" '
        match($0, /^\[[0-9]+\/[0-9]+\]/) {
            split(substr($0, 2, RLENGTH - 2), step, "/")
            twentieth = int(20 * step[1] / step[2])
            if (twentieth > told) {
                told = twentieth
                "date +%s" | getline now
                close("date +%s")
                printf "  %3d %%  %5d of %d, %d min %02d s\n", 5 * told, step[1], step[2], (now - started) / 60, (now - started) % 60
                fflush()
            }
        }' || fail "The build failed: $(grep -m 1 -A 20 -E 'FAILED|error:' "$log" || tail -n 20 "$log")"
}

# Licences of what Qt has taken over from others, each below the name of what it is about.
collect_third_party_licences() {
    local source=$1 about licence
    find "$source/src" -name qt_attribution.json -print | sort | grep -vE '/(android|wasm|xcb|gradle)/' |
        while read -r about; do
            sed -nE 's/.*"LicenseFile": *"([^"]+)".*/\1/p' "$about" | sort -u | while read -r licence; do
                [[ -f ${about%/*}/$licence ]] || continue
                printf '######## %s\n\n' "$(sed -nE 's/.*"Name": *"(.*)",?/\1/p' "$about" | paste -sd ';')"
                cat "${about%/*}/$licence"
                printf '\n\n'
            done
        done
}

# Qt's licences, and by what it can be built again.
collect_qt_licences() {
    local source=$1 into=$2
    mkdir -p "$into"
    cp "$source"/LICENSES/{LGPL-3.0-only,GPL-3.0-only,GPL-2.0-only,Qt-GPL-exception-1.0}.txt "$into"
    collect_third_party_licences "$source" >"$into/Third-parties-in-Qt.txt"
    {
        printf 'Qt was built from the Debian source package qt6-base %s, unchanged, configured with\n\n' "$(qt_source_version)"
        qt_options
        printf '\nand this toolchain file:\n\n'
        cat "$windows_toolchain"
    } >"$into/How-Qt-was-built.txt"
}

# Sources and configuration, unless a build that broke off has left them.
prepare_qt() {
    local folder=$1 work=$2 options
    [[ ! -f $work/build/build.ninja ]] || return 0
    rm -rf "$work"
    mkdir -p "$work"
    download_sources qt6-base "$(qt_source_version)" "$work"
    cp "$windows_toolchain" "$work/toolchain.cmake"
    mapfile -t options < <(qt_options)
    cmake -S "$work/source" -B "$work/build" -G Ninja "-DCMAKE_INSTALL_PREFIX=$folder" \
        "-DCMAKE_TOOLCHAIN_FILE=$work/toolchain.cmake" "${options[@]}" >"$work/configure.log" 2>&1 || {
        rm -f "$work/build/build.ninja"
        fail "Qt could not be configured: $(tail -n 20 "$work/configure.log")"
    }
}

build_qt() {
    local folder=$1 work=$1.work
    say "Building Qt for Windows into $folder: half an hour, once"
    rm -rf "$folder"
    prepare_qt "$folder" "$work"
    build_with_progress "$work/build.log" cmake --build "$work/build" --parallel "$(nproc)"
    cmake --install "$work/build" >"$work/install.log" || fail "Qt could not be installed: $(tail -n 5 "$work/install.log")"
    collect_qt_licences "$work/source" "$folder/licences"
    rm -rf "$work"
    touch "$folder/built"
}

# Debian has pugixml ready for its own system alone. It is one source file, which is built with the program.
pugixml_folder() {
    local version
    version=$(dpkg-query --show --showformat '${source:Version}' libpugixml-dev 2>/dev/null) || return
    printf '%s/pugixml-%s\n' "$windows_cache" "$version"
}

fetch_pugixml() {
    local folder=$1 work=$1.work
    rm -rf "$folder" "$work"
    mkdir -p "$work"
    download_sources pugixml "${folder##*/pugixml-}" "$work"
    mv "$work/source/src" "$folder"
    rm -rf "$work"
    touch "$folder/built"
}

# Tells cmake's presets where in the cache things are, or would be.
name_windows_libraries() {
    VARDA_WINDOWS_QT=$(windows_qt_folder) || fail "qt6-base-dev is not installed, so its version is not known."
    VARDA_PUGIXML=$(pugixml_folder) || fail "libpugixml-dev is not installed, so its version is not known."
    export VARDA_WINDOWS_QT VARDA_PUGIXML
}

# Sees to it that they are there. Two that build at the same time wait for each other.
ensure_windows_libraries() {
    name_windows_libraries
    mkdir -p "$windows_cache"
    exec {cache_lock}>"$windows_cache/lock"
    flock "$cache_lock"
    is_built "$VARDA_WINDOWS_QT" || build_qt "$VARDA_WINDOWS_QT"
    is_built "$VARDA_PUGIXML" || fetch_pugixml "$VARDA_PUGIXML"
    exec {cache_lock}>&-
}

# A build folder that knows others of them is begun afresh.
configure_windows_program() {
    local cache=$root/build/windows-program/CMakeCache.txt
    if [[ -f $cache ]] && ! { grep -qF "$VARDA_WINDOWS_QT/" "$cache" && grep -qF "$VARDA_PUGIXML" "$cache"; }; then
        rm -rf "$root/build/windows-program"
    fi
    configure windows-program
}
