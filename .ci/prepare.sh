# Sourced by ./run and ./test: makes sure that what the build needs is there. On Debian and its
# relatives the missing packages are installed; elsewhere it is said what is needed.

build_packages=(g++ cmake ninja-build qt6-base-dev qt6-svg-dev qt6-qpa-plugins fonts-dejavu-core)
test_packages=(libgtest-dev libbenchmark-dev python3 ngspice python3-scikit-rf)
clang_packages=(clang clang-format libclang-rt-14-dev)

# install PACKAGE...: with sudo where the user is not root.
install() {
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null 2>&1 || {
            echo "Please run as root: apt-get install $*" >&2
            return 1
        }
        as_root=(sudo)
    fi
    echo "Installing: $*"
    "${as_root[@]}" apt-get update -qq
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -y -qq --no-install-recommends "$@" >/dev/null
}

# need PACKAGE...: Debian package names.
need() {
    local missing=() name
    if command -v dpkg-query >/dev/null 2>&1; then
        for name in "$@"; do
            dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q 'ok installed' ||
                missing+=("$name")
        done
        if [ ${#missing[@]} -gt 0 ]; then install "${missing[@]}"; fi
        return
    fi
    for name in cmake ninja c++; do
        command -v "$name" >/dev/null 2>&1 && continue
        echo "Ladderwise needs a C++20 compiler, CMake 3.25, Ninja, Qt 6.4 or later (Core, Gui," >&2
        echo "Widgets, PrintSupport, Svg, Test) and, for its tests, GoogleTest and Google Benchmark." >&2
        echo "Not found here: $name" >&2
        return 1
    done
}

# configure_and_build PRESET [CMAKE-ARGUMENT...]: quiet unless something is wrong.
configure_and_build() {
    local log
    log=$(mktemp)
    echo "Building ($1) ..."
    if cmake --preset "$@" >"$log" 2>&1 && cmake --build --preset "$1" >>"$log" 2>&1; then
        rm -f "$log"
        return
    fi
    tail -n 60 "$log" >&2
    rm -f "$log"
    echo "The build failed." >&2
    return 1
}
