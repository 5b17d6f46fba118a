; Windows installer of Vetrix Tool (NSIS 3, 64-bit stub).
; Built by the "installer" target of a Windows build (packaging/CMakeLists.txt):
;   makensis -DVX_VERSION=4.1.0 -DVX_STAGE=<installed tree> -DVX_OUTFILE=<setup.exe>
;            -DVX_ICON=<Client.ico> VetrixTool.nsi
; VX_STAGE holds the tree of `cmake --install`: bin/ (programs, DLLs, rcc/,
; Translation/, log4qt/, platforms/, ...) and doc/. The installer copies it to
; Program Files, adds Start-menu entries and an uninstaller registered in
; Add/Remove Programs. /S installs and uninstalls silently.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
ManifestSupportedOS all
RequestExecutionLevel admin

!ifndef VX_VERSION | VX_STAGE | VX_OUTFILE | VX_ICON
!error "Define VX_VERSION, VX_STAGE, VX_OUTFILE and VX_ICON"
!endif

!define VX_NAME "Vetrix Tool"
!define VX_PUBLISHER "Orvex"
!define VX_EXE "VetrixTool.exe"
!define VX_UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\VetrixTool"
!define VX_MENU "$SMPROGRAMS\${VX_NAME}"

Name "${VX_NAME}"
OutFile "${VX_OUTFILE}"
InstallDir "$PROGRAMFILES64\${VX_PUBLISHER}\${VX_NAME}"
InstallDirRegKey HKLM "${VX_UNINSTALL_KEY}" "InstallLocation"
BrandingText "${VX_NAME} ${VX_VERSION}"

VIProductVersion "${VX_VERSION}.0"
VIAddVersionKey /LANG=1033 "ProductName" "${VX_NAME}"
VIAddVersionKey /LANG=1033 "CompanyName" "${VX_PUBLISHER}"
VIAddVersionKey /LANG=1033 "FileDescription" "${VX_NAME} Setup"
VIAddVersionKey /LANG=1033 "LegalCopyright" "Copyright 2025 Orvex Imaging. All rights reserved."
VIAddVersionKey /LANG=1033 "FileVersion" "${VX_VERSION}"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VX_VERSION}"

!include "MUI2.nsh"
!include "x64.nsh"
!include "FileFunc.nsh"

!define MUI_ICON "${VX_ICON}"
!define MUI_UNICON "${VX_ICON}"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\bin\${VX_EXE}"

!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "SimpChinese"

Function .onInit
    ${IfNot} ${RunningX64}
        MessageBox MB_ICONSTOP "${VX_NAME} needs 64-bit Windows." /SD IDOK
        Abort
    ${EndIf}
    SetRegView 64
    SetShellVarContext all
FunctionEnd

Function un.onInit
    SetRegView 64
    SetShellVarContext all
FunctionEnd

Section "Install"
    ; A reinstall replaces the program's files, never the user's.
    RMDir /r "$INSTDIR\bin"
    RMDir /r "$INSTDIR\doc"
    SetOutPath "$INSTDIR"
    File /r "${VX_STAGE}\bin"
    File /r "${VX_STAGE}\doc"
    WriteUninstaller "$INSTDIR\Uninstall.exe"

    ; Start menu: the program and its uninstaller.
    SetOutPath "$INSTDIR\bin"
    CreateDirectory "${VX_MENU}"
    CreateShortcut "${VX_MENU}\${VX_NAME}.lnk" "$INSTDIR\bin\${VX_EXE}" "" "$INSTDIR\bin\${VX_EXE}" 0
    CreateShortcut "${VX_MENU}\Uninstall ${VX_NAME}.lnk" "$INSTDIR\Uninstall.exe"

    ; Add/Remove Programs.
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "DisplayName" "${VX_NAME}"
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "DisplayVersion" "${VX_VERSION}"
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "Publisher" "${VX_PUBLISHER}"
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\bin\${VX_EXE},0"
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
    WriteRegStr HKLM "${VX_UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
    WriteRegDWORD HKLM "${VX_UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${VX_UNINSTALL_KEY}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    IntFmt $0 "0x%08X" $0
    WriteRegDWORD HKLM "${VX_UNINSTALL_KEY}" "EstimatedSize" "$0"
SectionEnd

Section "Uninstall"
    Delete "${VX_MENU}\${VX_NAME}.lnk"
    Delete "${VX_MENU}\Uninstall ${VX_NAME}.lnk"
    RMDir "${VX_MENU}"
    RMDir /r "$INSTDIR\bin"
    RMDir /r "$INSTDIR\doc"
    Delete "$INSTDIR\Uninstall.exe"
    RMDir "$INSTDIR"
    ; The publisher's folder goes too when nothing else of it is left.
    RMDir "$PROGRAMFILES64\${VX_PUBLISHER}"
    DeleteRegKey HKLM "${VX_UNINSTALL_KEY}"
SectionEnd
