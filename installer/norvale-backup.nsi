; The Windows installer of Norvale Backup: puts the program, its help file and its copy clip in
; the folder of the finance program Norvale, where the program looks for the data files.
; Built by scripts/make-installer.sh, which passes the files and the version:
;   NV_VERSION (1.7.1), NV_PROGRAM, NV_HELP, NV_CLIP, NV_ICON, NV_OUTFILE
; A 64-bit installer for a 64-bit program: it writes the native registry view and Program Files
; without redirection, and it runs under a Wine that has no 32-bit half.
Target amd64-unicode
Unicode true

!include "MUI2.nsh"

!define NV_NAME "Norvale Backup"
!define NV_EXE "norvale-backup.exe"
!define NV_HELP_NAME "NV BU tool.chm"
!define NV_CLIP_NAME "FILECOPY.AVI"
!define NV_UNINSTALLER "Uninstall Norvale Backup.exe"
!define NV_SHORTCUT "$SMPROGRAMS\${NV_NAME}.lnk"
!define NV_UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\NorvaleBackup"

Name "${NV_NAME}"
OutFile "${NV_OUTFILE}"
InstallDir "$PROGRAMFILES64\Norvale"
RequestExecutionLevel admin
SetCompressor /SOLID lzma
ManifestDPIAware true
BrandingText "${NV_NAME} ${NV_VERSION}"

!define MUI_ICON "${NV_ICON}"
!define MUI_UNICON "${NV_ICON}"
!define MUI_ABORTWARNING

!define MUI_WELCOMEPAGE_TEXT "Deze wizard installeert $(^NameDA) ${NV_VERSION} in de map van het financiële programma Norvale.$\r$\n$\r$\nSluit Norvale en $(^NameDA) af voordat u verdergaat.$\r$\n$\r$\n$_CLICK"
!insertmacro MUI_PAGE_WELCOME
!define MUI_PAGE_HEADER_SUBTEXT "Kies de map van het financiële programma Norvale."
!define MUI_DIRECTORYPAGE_TEXT_TOP "$(^NameDA) hoort in dezelfde map als het financiële programma Norvale: daar vindt het de bestanden die het veiligstelt. Meestal is dat C:\Program Files\Norvale. Staat Norvale ergens anders, klik dan op Bladeren en kies die map."
!define MUI_DIRECTORYPAGE_TEXT_DESTINATION "Map van Norvale"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH

!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "Dutch"

; No copyright line: the installer names no maker, as its uninstall entry names no publisher.
!pragma warning disable 9100
VIProductVersion "${NV_VERSION}.0"
VIFileVersion "${NV_VERSION}.0"
VIAddVersionKey /LANG=${LANG_DUTCH} "ProductName" "${NV_NAME}"
VIAddVersionKey /LANG=${LANG_DUTCH} "FileDescription" "Installatie van ${NV_NAME}"
VIAddVersionKey /LANG=${LANG_DUTCH} "FileVersion" "${NV_VERSION}"
VIAddVersionKey /LANG=${LANG_DUTCH} "ProductVersion" "${NV_VERSION}"

; The shortcut is for everyone on the machine, as the program is.
Function .onInit
    SetShellVarContext all
FunctionEnd

Function un.onInit
    SetShellVarContext all
FunctionEnd

Section "${NV_NAME}" SecProgram
    SetOutPath "$INSTDIR"
    File "/oname=${NV_EXE}" "${NV_PROGRAM}"
    File "/oname=${NV_HELP_NAME}" "${NV_HELP}"
    File "/oname=${NV_CLIP_NAME}" "${NV_CLIP}"
    WriteUninstaller "$INSTDIR\${NV_UNINSTALLER}"

    ; Started from the shortcut, the program works in its own folder, as it expects.
    CreateShortcut "${NV_SHORTCUT}" "$INSTDIR\${NV_EXE}"

    WriteRegStr HKLM "${NV_UNINSTALL_KEY}" "DisplayName" "${NV_NAME}"
    WriteRegStr HKLM "${NV_UNINSTALL_KEY}" "DisplayVersion" "${NV_VERSION}"
    WriteRegStr HKLM "${NV_UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\${NV_EXE},0"
    WriteRegStr HKLM "${NV_UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKLM "${NV_UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\${NV_UNINSTALLER}"'
    WriteRegStr HKLM "${NV_UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\${NV_UNINSTALLER}" /S'
    WriteRegDWORD HKLM "${NV_UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${NV_UNINSTALL_KEY}" "NoRepair" 1
    SectionGetSize ${SecProgram} $0
    WriteRegDWORD HKLM "${NV_UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

; Only what the installer put there goes: the folder also holds Norvale itself, the settings
; file NVbackuptool.ini and perhaps backups, so it goes only when nothing else is left in it.
Section "Uninstall"
    Delete "$INSTDIR\${NV_EXE}"
    Delete "$INSTDIR\${NV_HELP_NAME}"
    Delete "$INSTDIR\${NV_CLIP_NAME}"
    Delete "$INSTDIR\${NV_UNINSTALLER}"
    Delete "${NV_SHORTCUT}"
    DeleteRegKey HKLM "${NV_UNINSTALL_KEY}"
    RMDir "$INSTDIR"
SectionEnd
