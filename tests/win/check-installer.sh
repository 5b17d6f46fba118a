#!/bin/sh
# Installs the Windows installer silently under Wine, checks the installed
# tree, the Start-menu entries and the Add/Remove Programs entry, runs the
# installed vetrix-check, then uninstalls silently and checks that all of it
# is gone.
#   check-installer.sh WINE_RUN PREFIX INSTALLER VERSION
set -u
wine_run=$1
prefix=$2
installer=$3
version=$4

fail() { echo "FAIL: $*"; exit 1; }
run() { "$wine_run" --prefix "$prefix" "$@"; }

[ -f "$installer" ] || fail "$installer is missing (build the target 'installer')"

dir="$prefix/drive_c/Program Files/Orvex/Vetrix Tool"
menu="$prefix/drive_c/ProgramData/Microsoft/Windows/Start Menu/Programs/Vetrix Tool"
key='HKLM\Software\Microsoft\Windows\CurrentVersion\Uninstall\VetrixTool'
installed="bin/VetrixTool.exe bin/vetrix-check.exe bin/Probekit.dll
    bin/Qt5Core.dll bin/Qt5Gui.dll bin/Qt5Widgets.dll bin/Qt5Network.dll bin/Qt5Concurrent.dll
    bin/libstdc++-6.dll bin/libgcc_s_seh-1.dll bin/libwinpthread-1.dll
    bin/platforms/qwindows.dll bin/imageformats/qgif.dll bin/imageformats/qico.dll
    bin/rcc/Orvex.rcc bin/rcc/Panekit_Default.rcc
    bin/Translation/Vetrix_zh.qm bin/Translation/Panekit_zh_CN.qm bin/Translation/Basekit_zh_CN.qm
    bin/Translation/qt_zh_CN.qm bin/log4qt/log4qt_Orvex.conf
    doc/User_Manual_Orvex_English/index.html doc/User_Manual_Orvex_Chinese/index.html
    Uninstall.exe"
# Test-only pieces stay out of the installer.
not_installed="bin/Qt5Test.dll bin/platforms/qoffscreen.dll"

[ ! -e "$dir" ] || fail "$dir exists before the installation"
run "$installer" /S || fail "the installer failed ($?)"
for file in $installed; do
    [ -f "$dir/$file" ] || fail "not installed: $file"
done
for file in $not_installed; do
    [ ! -e "$dir/$file" ] || fail "installed but test-only: $file"
done
[ -f "$menu/Vetrix Tool.lnk" ] || fail "no Start-menu entry for the program"
[ -f "$menu/Uninstall Vetrix Tool.lnk" ] || fail "no Start-menu entry for the uninstaller"
entry=$(run reg query "$key") || fail "no Add/Remove Programs entry"
for value in 'DisplayName.*Vetrix Tool' 'DisplayVersion' 'Publisher.*Orvex' 'UninstallString.*Uninstall.exe' \
    'QuietUninstallString.*/S' 'InstallLocation.*Program Files\\Orvex\\Vetrix Tool'; do
    echo "$entry" | grep -q "$value" || fail "Add/Remove Programs entry lacks $value: $entry"
done
# The installed tree is complete enough to run a program.
printed=$(run "$dir/bin/vetrix-check.exe" --version | tr -d '\r') || fail "the installed vetrix-check does not run"
[ "$printed" = "vetrix-check $version" ] || fail "installed vetrix-check --version printed '$printed'"
echo "installed: $(find "$dir" -type f | wc -l) files"

# The uninstaller copies itself to a temporary folder and returns at once;
# wine-run ends with `wineserver -w`, which waits for that copy too.
run "$dir/Uninstall.exe" /S || fail "the uninstaller failed ($?)"
[ ! -e "$dir" ] || fail "left behind after the uninstallation: $(find "$dir" | head -5)"
[ ! -e "$prefix/drive_c/Program Files/Orvex" ] || fail "the empty Orvex folder is left behind"
[ ! -e "$menu" ] || fail "the Start-menu folder is left behind"
if run reg query "$key" >/dev/null 2>&1; then
    fail "the Add/Remove Programs entry is left behind"
fi
echo "uninstalled: no files, menu entries or registry key left"
