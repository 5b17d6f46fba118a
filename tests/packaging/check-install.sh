#!/bin/sh
# check-install.sh BUILD_DIR [bin/PROGRAM ...]
# Installs BUILD_DIR twice into temporary folders and checks what landed:
#  1. DESTDIR install with the /opt/vetrix-tool prefix: the run-time tree
#     under the prefix (the same relative layout as the build tree), the
#     manual, and the desktop integration below /usr (.desktop file, hicolor
#     icons, polkit action, /usr/bin links).
#  2. Install into a user's prefix: the integration stays inside the prefix
#     and no command links are made.
# Prints every failed check and exits 1 if there was any.
set -u
build=$1
shift
programs="$*"

failures=0
fail() { echo "FAIL: $*"; failures=$((failures + 1)); }
pass() { echo "ok:   $*"; }
check() { # check DESCRIPTION COMMAND...
    what=$1
    shift
    if "$@"; then pass "$what"; else fail "$what"; fi
}

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# --- 1. the packaged layout ----------------------------------------------------
dest=$work/dest
prefix=/opt/vetrix-tool
root=$dest$prefix
if ! DESTDIR=$dest cmake --install "$build" --prefix $prefix >"$work/install.log" 2>&1; then
    cat "$work/install.log"
    fail "cmake --install into DESTDIR"
    exit 1
fi
pass "cmake --install into DESTDIR"

for program in $programs; do
    case $program in
    *.so | *.so.* | *.dll) check "$program is installed" test -f "$root/$program" ;;
    *) check "$program is installed and executable" test -x "$root/$program" ;;
    esac
done

# Files the program opens by fixed names relative to bin/.
for file in bin/rcc/Panekit_Default.rcc bin/rcc/Orvex.rcc \
        bin/Translation/Vetrix_zh.qm bin/Translation/Panekit_zh_CN.qm \
        bin/Translation/Basekit_zh_CN.qm bin/Translation/qt_zh_CN.qm \
        bin/log4qt/log4qt_Orvex.conf \
        doc/User_Manual_Orvex_English/index.html \
        doc/User_Manual_Orvex_English/GUID-CAB2338A-7C22-4FB6-B268-6BC80BF7D6AC.html \
        doc/User_Manual_Orvex_Chinese/index.html \
        doc/User_Manual_Orvex_Chinese/GUID-AAB876F3-D1ED-4664-A94D-56CA4C6FE275.html; do
    check "$file is installed" test -s "$root/$file"
done

# The build tree mirrors the installed tree: every run-time file the build
# produced is installed at the same relative path, unchanged.
count=0
for file in $(cd "$build" && find bin/rcc bin/Translation bin/log4qt doc -type f 2>/dev/null | sort); do
    count=$((count + 1))
    if ! cmp -s "$build/$file" "$root/$file"; then
        fail "$file of the build tree is installed unchanged"
    fi
done
check "the build tree holds run-time files to compare ($count)" test "$count" -gt 10
# and nothing outside the two trees leaked into the prefix's bin/
check "no build artefacts under bin/ (CMakeFiles, .a)" \
    test -z "$(find "$root/bin" -name CMakeFiles -o -name '*.a' | head -n 1)"

# The .desktop file.
desktop=$dest/usr/share/applications/org.orvex.VetrixTool.desktop
check ".desktop file installed below /usr" test -f "$desktop"
if command -v desktop-file-validate >/dev/null 2>&1; then
    check ".desktop file validates" desktop-file-validate "$desktop"
else
    fail "desktop-file-validate is missing (package desktop-file-utils)"
fi
check ".desktop Exec is the installed program" grep -qx "Exec=$prefix/bin/VetrixTool" "$desktop"
check ".desktop Name" grep -qx "Name=Vetrix Tool" "$desktop"
check ".desktop Name[zh_CN]" grep -qx "Name\[zh_CN\]=Vetrix工具" "$desktop"
check ".desktop Icon" grep -qx "Icon=org.orvex.VetrixTool" "$desktop"
check ".desktop Categories" grep -q "^Categories=.*System;" "$desktop"

# Icons: every PNG is square and as large as its folder says.
png_size() { # width of a PNG from its IHDR chunk
    od -An -t u1 -j 16 -N 4 "$1" | awk '{ print $1 * 16777216 + $2 * 65536 + $3 * 256 + $4 }'
}
icons=$dest/usr/share/icons/hicolor
for size in 16 24 32 48 64 128 256; do
    png=$icons/${size}x${size}/apps/org.orvex.VetrixTool.png
    if [ -f "$png" ]; then
        check "icon ${size}x${size} is $size pixels wide" test "$(png_size "$png")" = "$size"
    else
        fail "icon ${size}x${size} installed"
    fi
done
check "scalable icon installed" grep -q "<svg" "$icons/scalable/apps/org.orvex.VetrixTool.svg"

# polkit action for pkexec, naming the installed helper.
policy=$dest/usr/share/polkit-1/actions/org.orvex.vetrixtool.policy
check "polkit action installed below /usr/share/polkit-1/actions" test -f "$policy"
check "polkit action names the installed helper" \
    grep -q "exec.path\">$prefix/bin/vetrix-helper<" "$policy"
check "polkit action has no placeholder left" sh -c "! grep -q '@' '$policy'"

# Commands in PATH: relative links that resolve inside the DESTDIR too.
link=$dest/usr/bin/vetrix-check
check "/usr/bin/vetrix-check is a link" test -L "$link"
check "/usr/bin/vetrix-check resolves to the installed program" \
    test "$(readlink -f "$link")" = "$(readlink -f "$root/bin/vetrix-check")"
if [ -x "$root/bin/vetrix-check" ]; then
    check "the installed vetrix-check runs through the link" \
        sh -c "'$link' --version | grep -q '^vetrix-check '"
fi
if [ -x "$root/bin/VetrixTool" ]; then
    check "/usr/bin/vetrix-tool resolves to the installed program" \
        test "$(readlink -f "$dest/usr/bin/vetrix-tool")" = "$(readlink -f "$root/bin/VetrixTool")"
fi

# The manual: each topic page exists, index.html hands ?guid= on to it and
# offers plain links for browsers without script, and no local link is broken.
for manual in "$root"/doc/User_Manual_Orvex_*; do
    name=${manual##*/}
    check "$name: index.html reads ?guid= from the address" grep -q "location.search" "$manual/index.html"
    check "$name: index.html works without script (links)" grep -q '<noscript>' "$manual/index.html"
    for page in "$manual"/*.html; do
        for target in $(grep -oE '(href|src)="[^"]*"' "$page" |
                sed -E 's/^(href|src)="//; s/"$//; s/[?#].*//' | grep -v ':' | sort -u); do
            if [ ! -e "$manual/$target" ]; then
                fail "$name/${page##*/} links to $target, which does not exist"
            fi
        done
        if grep -qE '(href|src)="(https?:)?//' "$page"; then
            fail "$name/${page##*/} loads an external resource"
        fi
    done
done
check "English index.html hands its topic on" \
    grep -q '"GUID-CAB2338A-7C22-4FB6-B268-6BC80BF7D6AC.html"' "$root/doc/User_Manual_Orvex_English/index.html"
check "Chinese index.html hands its topic on" \
    grep -q '"GUID-AAB876F3-D1ED-4664-A94D-56CA4C6FE275.html"' "$root/doc/User_Manual_Orvex_Chinese/index.html"
check "Chinese manual is not a copy of the English one" \
    sh -c "! cmp -s '$root/doc/User_Manual_Orvex_English/index.html' '$root/doc/User_Manual_Orvex_Chinese/index.html'"

# --- 2. a user's prefix ------------------------------------------------------
user=$work/home/.local/vetrix-tool
if cmake --install "$build" --prefix "$user" >"$work/install-user.log" 2>&1; then
    pass "cmake --install into a user's prefix"
    check "user install: .desktop file inside the prefix" \
        grep -qx "Exec=$user/bin/VetrixTool" "$user/share/applications/org.orvex.VetrixTool.desktop"
    check "user install: polkit action names the helper under the prefix" \
        grep -q "exec.path\">$user/bin/vetrix-helper<" "$user/share/polkit-1/actions/org.orvex.vetrixtool.policy"
    check "user install: no command links" test ! -e "$user/bin/vetrix-tool"
    check "user install: manual beside bin/" test -f "$user/doc/User_Manual_Orvex_English/index.html"
else
    cat "$work/install-user.log"
    fail "cmake --install into a user's prefix"
fi

echo "$failures failure(s)"
[ "$failures" -eq 0 ]
