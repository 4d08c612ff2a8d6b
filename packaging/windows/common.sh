# Sourced by the scripts of this folder: where things are kept between runs, and what is installed.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
windows=$root/packaging/windows
source "$root/.ci/prepare.sh"

# Qt for Windows is built once and kept here, for every clone of the sources.
cache=${LADDERWISE_WINDOWS_CACHE:-${XDG_CACHE_HOME:-$HOME/.cache}/ladderwise-windows}
build=$root/build/windows
target=x86_64-w64-mingw32

qt_packages=(g++-mingw-w64-x86-64-posix cmake ninja-build dpkg-dev qt6-base-dev qt6-base-dev-tools
    qt6-svg-dev googletest)
# The version of Qt is that of the host's tools: the two must be of one version.
qt_version() { dpkg-query -W -f='${source:Upstream-Version}' qt6-base-dev | sed 's/+.*//'; }

# Names what Qt was built from; another recipe or version is another folder.
qt_folder() {
    local recipe
    recipe=$(cat "$windows"/{qt,toolchain.cmake,svg/*} | sha256sum | cut -c1-8)
    echo "$cache/qt-$(qt_version)-$recipe"
}

# Runs a command, which says nothing unless it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 || status=$?
    if [ $status -ne 0 ]; then
        grep -aE 'error|FAILED|undefined' "$log" | head -n 20 >&2 || true
        tail -n 20 "$log" >&2
    fi
    rm -f "$log"
    return $status
}

# The version stands in one place.
version() { sed -n 's/^project(Ladderwise VERSION \([0-9.]*\).*/\1/p' "$root/CMakeLists.txt"; }
