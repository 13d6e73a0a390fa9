# shellcheck shell=bash
# What ./run, ./test and .ci/run share. Sourced after `root` was set to the folder of the repository.

viewer_package=@scalar/api-reference@1.72.1
lzfse_package=apfs-dkms
viewer_sha256=bf091006bdc3af6067af77c2f534812e3e633e94a94e87138069f570f33b762c
: "${root:?}"

say() {
    printf '%s\n' "$*"
}

die() {
    printf 'error: %s\n' "$*" >&2
    exit 1
}

# Runs a command with its output in build/setup.log; shows the end of that when the command fails.
logged() {
    mkdir -p "$root/build"
    if ! "$@" >"$root/build/setup.log" 2>&1; then
        tail -n 8 "$root/build/setup.log" >&2
        return 1
    fi
}

can_install() {
    [ "$(id -u)" = 0 ] || command -v sudo >/dev/null
}

# The packages of the sections of packages.txt that are not installed, one a line.
missing_packages() {
    local wanted=" $* " section='' name command installed
    local packages=()
    while read -r name command _; do
        case $name in
            '' | '#'*) ;;
            '['*) section=${name//[\[\]]/} ;;
            *)
                [[ $wanted == *" $section "* ]] || continue
                if [[ $command == '?' ]]; then
                    can_install || continue
                    command=''
                fi
                if [[ -z $command || $command == '#'* ]] || ! command -v "$command" >/dev/null; then
                    packages+=("$name")
                fi
                ;;
        esac
    done <"$root/packages.txt"
    # dpkg-query fails when it doesn't know one of them, and lists the others all the same.
    installed=" $(dpkg-query -W -f='${db:Status-Status}:${Package} ' "${packages[@]}" 2>/dev/null || true)"
    for name in "${packages[@]}"; do
        [[ $installed == *" installed:$name "* ]] || say "$name"
    done
}

apt_get() {
    local command=(env DEBIAN_FRONTEND=noninteractive apt-get -q -y -o DPkg::Lock::Timeout=300 "$@")
    [ "$(id -u)" = 0 ] || command=(sudo "${command[@]}")
    logged "${command[@]}"
}

# Without apt the user installs by hand; there is no sense in trying to build without these two.
require_build_tools() {
    if ! command -v cmake >/dev/null || ! command -v ninja >/dev/null; then
        if [ "$(uname)" = Darwin ]; then
            say "Install what Quillorn needs with Homebrew:" >&2
            say "  brew install cmake ninja icu4c cctz openssl curl sqlite fmt rapidjson cli11 node" \
                "googletest rapidcheck lzfse" >&2
            say "and set CMAKE_PREFIX_PATH=\"\$(brew --prefix icu4c):\$(brew --prefix openssl)\"." >&2
        else
            say "This is no Debian system. Install the counterparts of the packages in packages.txt." >&2
        fi
        die "cmake and ninja are missing"
    fi
}

# Installs what is missing of the sections named.
install_packages() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        require_build_tools
        return
    fi
    local missing
    missing=$(missing_packages "$@")
    [ -n "$missing" ] || return 0
    missing=${missing//$'\n'/ }
    can_install ||
        die "these packages are missing, and only root can install them (there is no sudo): $missing"
    say "Installing Debian packages (output in build/setup.log): $missing"
    apt_get update || die "apt-get update failed"
    # shellcheck disable=SC2086 # names of packages hold no blanks
    apt_get install --no-install-recommends $missing ||
        die "apt-get could not install the packages; is the network there?"
}

npm_quietly() {
    logged npm --fetch-retries=1 --fetch-timeout=60000 --no-update-notifier --no-audit --no-fund "$@"
}

# Brings the script that draws /docs to build/viewer. Quillorn works without it, so a failure is a warning only, and
# the next try is an hour later.
fetch_viewer() {
    local folder=$root/build/viewer
    local file=$folder/scalar.standalone.min.js
    [[ $(sha256 "$file") == "$viewer_sha256" ]] && return
    [ -z "$(find "$folder/unreachable" -mmin -60 2>/dev/null)" ] || return 0
    say "Fetching the viewer of /docs ($viewer_package)"
    rm -rf "$folder"
    mkdir -p "$folder/package"
    if (cd "$folder" && npm_quietly pack "$viewer_package" && tar -xzf ./*.tgz &&
        [[ $(sha256 package/dist/browser/standalone.js) == "$viewer_sha256" ]]) 2>/dev/null; then
        mv "$folder/package/dist/browser/standalone.js" "$file"
    else
        say "warning: the viewer could not be fetched (output in build/setup.log); /docs will be empty in this build"
        touch "$folder/unreachable"
    fi
    rm -rf "$folder/package" "$folder"/*.tgz
}

# Brings the sources of LZFSE to build/lzfse, for systems without liblzfse. Debian has them in a package for another
# purpose, which is unpacked and never installed.
fetch_lzfse() {
    local folder=$root/build/lzfse
    [ ! -f "$folder/lzfse_encode.c" ] || return 0
    ! c++ -x c++ -include lzfse.h - -llzfse -o /dev/null <<<'int main() {}' 2>/dev/null || return 0
    command -v apt-get >/dev/null || die "liblzfse is missing; install it (with Homebrew: brew install lzfse)"
    say "Fetching the sources of LZFSE ($lzfse_package)"
    mkdir -p "$root/build"
    local temporary
    temporary=$(mktemp -d "$folder.XXXXXX")
    # Without package lists the download fails at once.
    if (cd "$temporary" && { logged apt-get -q download "$lzfse_package" ||
        { apt_get update && logged apt-get -q download "$lzfse_package"; }; } 2>/dev/null &&
        dpkg -x ./*.deb . && prepare_lzfse usr/src/*/lzfse usr/share/doc/"$lzfse_package"/copyright lzfse); then
        rm -rf "$folder"
        mv "$temporary/lzfse" "$folder"
    fi
    rm -rf "$temporary"
    [ -f "$folder/lzfse_encode.c" ] ||
        die "the sources of LZFSE could not be fetched (output in build/setup.log); is the network there?"
}

# Makes sources for user space of those for the kernel: prepare_lzfse KERNEL-SOURCES LICENSES RESULT
prepare_lzfse() {
    local source=$1 licenses=$2 result=$3
    local headers=$result/linux
    mkdir -p "$headers" "$result/include" &&
        cp "$source"/lzfse*.[ch] "$source"/lzvn*.[ch] "$result/" && rm -f "$result/lzfse_main.c" &&
        sed -n '/^Files: lzfse/,/^Files: debian/p' "$licenses" >"$result/LICENSE" &&
        printf '#include <stddef.h>\n#include <stdint.h>\n' >"$headers/types.h" &&
        printf '#include <stddef.h>\n' >"$headers/stddef.h" &&
        printf '#include <string.h>\n' >"$headers/string.h" &&
        printf '#include <limits.h>\n#include <stdint.h>\n' >"$headers/limits.h" &&
        printf '#include <stdlib.h>\n#define kmalloc(n, f) malloc(n)\n#define kfree(p) free(p)\n' >"$headers/slab.h" &&
        # What we include must not drag these in: they would stand before the system's own.
        sed -e 's,<linux/stddef.h>,<stddef.h>,' -e 's,<linux/types.h>,<stdint.h>,' "$result/lzfse.h" \
            >"$result/include/lzfse.h"
}

sha256() {
    [ ! -f "$1" ] || cmake -E sha256sum "$1" | cut -d ' ' -f 1
}

# Installs the tools of scripts/npm into build/npm.
install_npm_tools() {
    local folder=$root/build/npm
    mkdir -p "$folder"
    cp "$root"/scripts/npm/* "$folder/"
    cmp -s "$folder/package-lock.json" "$folder/installed.json" && return
    say "Installing the tools of scripts/npm"
    (cd "$folder" && npm_quietly ci --ignore-scripts) || die "npm could not install the tools of scripts/npm"
    cp "$folder/package-lock.json" "$folder/installed.json"
}

# Builds one preset, or the targets of it that are named behind it. Ninja runs CMake again when a CMake file changes,
# but doesn't know about the presets.
build() {
    local folder=$root/build/$1
    if [ ! -f "$folder/build.ninja" ] || [ "$root/CMakePresets.json" -nt "$folder/build.ninja" ] ||
        [ -n "${QUILLORN_WERROR:-}" ]; then
        say "Configuring build/$1"
        logged cmake -S "$root" --preset "$1" ${QUILLORN_WERROR:+-DQUILLORN_WERROR="$QUILLORN_WERROR"} ||
            die "CMake could not configure the build (all of its output: build/setup.log)"
    fi
    say "Building build/$1"
    shift
    cmake --build "$folder" --parallel "$(getconf _NPROCESSORS_ONLN)" ${1:+--target "$@"} || die "the build failed"
}

# Runs the tests of a preset, under the command in `launcher` where that is set; further arguments go to ctest. They
# get empty XDG folders: no test may ever meet the user's own data.
run_tests() {
    local preset=$1 home status=0
    shift
    home=$(mktemp -d)
    # shellcheck disable=SC2086 # a command of several words
    env XDG_CONFIG_HOME="$home/config" XDG_DATA_HOME="$home/data" XDG_STATE_HOME="$home/state" \
        XDG_CACHE_HOME="$home/cache" ${launcher:-} ctest --test-dir "$root/build/$preset" --output-on-failure --no-tests=error --parallel 2 "$@" || status=$?
    rm -rf "$home"
    return "$status"
}
