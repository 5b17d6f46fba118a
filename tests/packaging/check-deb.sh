#!/bin/sh
# check-deb.sh BUILD_DIR CPACK [bin/PROGRAM ...]
# Builds the Debian package of BUILD_DIR into a temporary folder with CPack
# and checks its control fields and its file list. Exits 1 on any failure.
set -u
build=$1
cpack=$2
shift 2
programs="$*"

failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
pass() { echo "ok:   $*"; }
check() {
    what=$1
    shift
    if "$@"; then pass "$what"; else fail "$what"; fi
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

if ! (cd "$build" && "$cpack" -G DEB -B "$work" >"$work/cpack.log" 2>&1); then
    cat "$work/cpack.log"
    fail "cpack -G DEB"
    exit 1
fi
pass "cpack -G DEB"
deb=$(ls "$work"/*.deb 2>/dev/null | head -n 1)
check "one .deb written" test -f "$deb"
[ -f "$deb" ] || exit 1
echo "package: ${deb##*/}"

field() { dpkg-deb -f "$deb" "$1"; }
check "Package is vetrix-tool" test "$(field Package)" = "vetrix-tool"
check "Architecture is set" test -n "$(field Architecture)"
depends=$(field Depends)
echo "Depends: $depends"
for dep in pkexec usb.ids pci.ids fonts-wqy-microhei; do
    check "Depends names $dep" sh -c "echo '$depends' | grep -q '$dep'"
done
if command -v dpkg-shlibdeps >/dev/null 2>&1; then
    check "Depends names the Qt libraries (dpkg-shlibdeps)" sh -c "echo '$depends' | grep -q 'libqt5core5a'"
fi

dpkg-deb -c "$deb" | awk '{ print $6 }' | sed 's|^\./|/|' >"$work/files"
has() { grep -qx "$1" "$work/files"; }
for program in $programs; do
    check "package holds /opt/vetrix-tool/$program" has "/opt/vetrix-tool/$program"
done
for file in /opt/vetrix-tool/bin/rcc/Orvex.rcc /opt/vetrix-tool/bin/Translation/Vetrix_zh.qm \
        /opt/vetrix-tool/bin/log4qt/log4qt_Orvex.conf \
        /opt/vetrix-tool/doc/User_Manual_Orvex_English/index.html \
        /opt/vetrix-tool/doc/User_Manual_Orvex_Chinese/index.html \
        /usr/share/applications/org.orvex.VetrixTool.desktop \
        /usr/share/icons/hicolor/48x48/apps/org.orvex.VetrixTool.png \
        /usr/share/polkit-1/actions/org.orvex.vetrixtool.policy \
        /usr/bin/vetrix-check; do
    check "package holds $file" has "$file"
done
check "package puts nothing in the build machine's paths" \
    sh -c "! grep -q '$(cd "$build" && pwd)' '$work/files'"

echo "$failures failure(s)"
[ "$failures" -eq 0 ]
