# Sourced by ./run, ./test, ./fuzz, ./bench and ./package: saying what is done, failing clearly, installing what is missing.
# shellcheck shell=bash

set -euo pipefail
export DEBIAN_FRONTEND=noninteractive

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
me=$(basename "$0")

say() { printf '%s: %s\n' "$me" "$*" >&2; }

fail() {
    printf '%s: FAILED: %s\n' "$me" "$*" >&2
    exit 1
}

# What every build needs.
build_packages=(g++ cmake ninja-build ccache libsqlitecpp-dev libsqlite3-dev nlohmann-json3-dev pkg-config mdbtools-dev
    libcli11-dev libmuparser-dev)
window_packages=(qt6-base-dev qt6-serialport-dev libqcustomplot-dev libqt6svg6 fonts-dejavu-core)

# need_packages NAME... installs what is missing of Debian's packages.
need_packages() {
    command -v dpkg-query >/dev/null ||
        { say "this is no Debian system: please make sure that you have the equivalents of $*"; return; }
    local missing=() name
    for name in "$@"; do
        [ "$(dpkg-query -W -f='${Status}' "$name" 2>/dev/null)" = 'install ok installed' ] || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "missing packages: ${missing[*]}. Install them as root, or install sudo."
        as_root=(sudo)
    fi
    say "installing ${missing[*]}"
    "${as_root[@]}" apt-get update -qq </dev/null || fail "the package lists could not be updated"
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends \
        "${missing[@]}" </dev/null >&2 || fail "these packages could not be installed: ${missing[*]}"
}

# build PRESET [TARGET...] configures and builds, quietly unless that fails.
build() {
    local preset=$1 log
    shift
    log=$root/build/$preset.log
    mkdir -p "$root/build"
    say "building ($preset), log in build/$preset.log"
    (cd "$root" && cmake --preset "$preset") >"$log" 2>&1 </dev/null ||
        { tail -n 30 "$log" >&2; fail "configuring $preset"; }
    local targets=()
    [ $# -gt 0 ] && targets=(--target "$@")
    (cd "$root" && cmake --build --preset "$preset" "${targets[@]}") >>"$log" 2>&1 </dev/null ||
        { grep -E -A 12 'error|FAILED' "$log" | tail -n 60 >&2 || true; fail "building $preset"; }
}

# export_commit FOLDER puts the files of the last commit there. What is built of them bears the time of that commit, and the
# same rights whoever builds it. Sets commit.
export_commit() {
    commit=$(git -C "$root" rev-parse --verify --quiet HEAD) || fail "packages are made of a commit; this folder has none"
    [ -z "$(git -C "$root" status --porcelain)" ] || say "what is not committed is left out"
    SOURCE_DATE_EPOCH=$(git -C "$root" log -1 --format=%ct "$commit")
    export SOURCE_DATE_EPOCH
    umask 022
    mkdir -p "$1"
    git -C "$root" archive "$commit" | tar -x -C "$1"
}
