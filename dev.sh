#!/usr/bin/env bash
# Vetrix Tool developer entry point.
#   ./dev.sh run    install what is missing, build, run the program
#   ./dev.sh test   install what is missing, build, run every test
set -euo pipefail
cd "$(dirname "$0")"

# Debian 12 packages the build, the program and the tests need.
PACKAGES=(
    cmake ninja-build g++ pkg-config
    qtbase5-dev qttools5-dev qttools5-dev-tools qttranslations5-l10n libqt5svg5-dev
    libmnl-dev usb.ids pci.ids fonts-wqy-microhei
    libxcb1-dev  # kit: asks X11 whether a compositor runs (window shadows)
    imagemagick  # tools/screenshot captures the virtual display with import
    # tests: sanitizer runtimes come with g++; network namespaces need iproute2
    iproute2 xvfb xauth dbus-daemon
    # The Windows build: mingw-w64 (posix threads) against the Windows Qt in
    # ../shared/toolchains, its tests under Wine (windows on Xvfb, clicked
    # with xdotool), the installer made with NSIS
    g++-mingw-w64-x86-64-posix xz-utils wine64 nsis xdotool
    desktop-file-utils  # tests/packaging validates the .desktop file
    python3-jsonschema  # tests/usb validates the USB tree reports against doc/schema
    libbenchmark-dev  # bench/usb/bench_usbtreecli (Google Benchmark)
)

install_missing() {
    local missing=() p
    for p in "${PACKAGES[@]}"; do
        dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
    done
    ((${#missing[@]})) || return 0
    echo "Installing: ${missing[*]}"
    local sudo=()
    [ "$(id -u)" -eq 0 ] || sudo=(sudo)
    "${sudo[@]}" apt-get update
    DEBIAN_FRONTEND=noninteractive "${sudo[@]}" apt-get install -y --no-install-recommends "${missing[@]}"
}

build() { # build DIR [cmake options...]
    local dir=$1; shift
    # A compiler cache, when the machine has one, makes the three builds of
    # the test command (and rebuilds in other work trees) much cheaper.
    local cache=()
    command -v ccache >/dev/null 2>&1 &&
        cache=(-DCMAKE_C_COMPILER_LAUNCHER=ccache -DCMAKE_CXX_COMPILER_LAUNCHER=ccache)
    cmake -S . -B "$dir" -G Ninja "${cache[@]}" "$@" >/dev/null
    cmake --build "$dir" -j "$(nproc)"
}

# The Windows Qt (qtbase 5.15 for mingw-w64): $VX_QT_WIN_PREFIX, else
# /opt/qt5-mingw64, else the archive beside the repository, unpacked once
# into a cache folder. Prints the prefix.
windows_qt() {
    local archive=${VX_QT_WIN_ARCHIVE:-../shared/toolchains/qt5-mingw64.tar.xz}
    local cache=${VX_CACHE_DIR:-${XDG_CACHE_HOME:-$HOME/.cache}/vetrix-tool}
    if [ -n "${VX_QT_WIN_PREFIX:-}" ]; then
        echo "$VX_QT_WIN_PREFIX"
    elif [ -d /opt/qt5-mingw64/lib/cmake/Qt5 ]; then
        echo /opt/qt5-mingw64
    elif [ -f "$archive" ]; then
        if [ ! -f "$cache/qt5-mingw64.stamp" ] || [ "$archive" -nt "$cache/qt5-mingw64.stamp" ]; then
            echo "Unpacking $archive into $cache" >&2
            rm -rf "$cache/qt5-mingw64"
            mkdir -p "$cache"
            tar -C "$cache" -xJf "$archive"
            touch "$cache/qt5-mingw64.stamp"
        fi
        echo "$cache/qt5-mingw64"
    else
        echo "dev.sh: no Windows Qt: set VX_QT_WIN_PREFIX or provide $archive" >&2
        return 1
    fi
}

# Cross-builds the Windows program, its tests and its installer into
# build-win (resources from the host build in build) and runs the tests
# under Wine.
windows_test() {
    local start=$SECONDS qt
    qt=$(windows_qt)
    build build-win -DCMAKE_TOOLCHAIN_FILE=cmake/mingw-w64.cmake -DVX_QT_WIN_PREFIX="$qt" \
        -DVX_HOST_BUILD_DIR="$PWD/build" -DVX_BUILD_BENCH=OFF
    cmake --build build-win --target installer
    ctest --test-dir build-win --output-on-failure -j "$(nproc)"
    echo "Windows build and tests under Wine: $((SECONDS - start)) s"
}

# The tests labelled "thread" in a configured build: the ones worth a
# thread-sanitized build of their own.
thread_tests() {
    ctest --test-dir "$1" -N -L thread | sed -n 's/^ *Test *#[0-9]*: //p' | tr '\n' ' '
}

case "${1:-}" in
run)
    # Only the program writes to stdout, so `./dev.sh run --format json >
    # report.json` holds the report alone; the set-up and build go to stderr.
    { install_missing; build build; } >&2
    if [ -n "${DISPLAY:-}${WAYLAND_DISPLAY:-}" ] && [ -x build/bin/VetrixTool ]; then
        exec build/bin/VetrixTool "${@:2}"
    fi
    exec build/bin/vetrix-check "${@:2}"
    ;;
test)
    install_missing
    build build
    ctest --test-dir build --output-on-failure -j "$(nproc)"
    windows_test
    # Address and undefined-behaviour sanitizers over every test, then the
    # thread sanitizer over the tests that run threads (label "thread").
    build build-asan -DVX_SANITIZE=address,undefined -DVX_BUILD_BENCH=OFF -DCMAKE_BUILD_TYPE=Debug
    ASAN_OPTIONS=detect_leaks=1 LSAN_OPTIONS="suppressions=$PWD/tests/lsan.supp:fast_unwind_on_malloc=0" \
        UBSAN_OPTIONS=print_stacktrace=1 ctest --test-dir build-asan --output-on-failure -j "$(nproc)"
    cmake -S . -B build-tsan -G Ninja -DVX_SANITIZE=thread -DVX_BUILD_BENCH=OFF -DVX_BUILD_GUI=OFF \
        -DCMAKE_BUILD_TYPE=Debug >/dev/null
    # shellcheck disable=SC2046
    cmake --build build-tsan -j "$(nproc)" --target $(thread_tests build-tsan)
    TSAN_OPTIONS="halt_on_error=1 suppressions=$PWD/tests/tsan.supp" \
        ctest --test-dir build-tsan --output-on-failure -L thread -j "$(nproc)"
    ;;
*)
    echo "usage: $0 run|test" >&2
    exit 2
    ;;
esac
