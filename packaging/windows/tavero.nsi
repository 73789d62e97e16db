; The Windows installer: makensis -DVERSION=<version> -DSTAGE=<staged tree> -DOUTFILE=<setup.exe>
;   [-DOPENVPN_DIR=<folder holding openvpn.exe and its DLLs>] tavero.nsi
; Installs the staged programs under Program Files, registers the event source "TAVERO", adds
; Start-menu entries and an uninstaller. openvpn.exe comes from an installed OpenVPN for Windows
; (or OPENVPN_DIR at build time) into "bin"; without one the installer says that it is needed.
; "/S" installs silently (the update runner uses it).
Unicode true
SetCompressor /SOLID lzma
RequestExecutionLevel admin
!include "x64.nsh"
!include "LogicLib.nsh"
!include "FileFunc.nsh"

Name "Tavero"
OutFile "${OUTFILE}"
InstallDir "$PROGRAMFILES64\Tavero"
InstallDirRegKey HKLM "Software\Tavero" "InstallDir"
VIProductVersion "${VERSION}"
VIAddVersionKey "ProductName" "Tavero"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Tavero VPN client setup"
VIAddVersionKey "LegalCopyright" "Tavero"

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Tavero"
!define EVENTLOG_KEY "SYSTEM\CurrentControlSet\services\eventlog\Application\TAVERO"

Function .onInit
    ${If} ${RunningX64}
        SetRegView 64
    ${Else}
        MessageBox MB_ICONSTOP "Tavero needs a 64-bit Windows." /SD IDOK
        Abort
    ${EndIf}
FunctionEnd

Section "Tavero" main
    SectionIn RO
    ; An update replaces the files of a client that has just quit.
    SetOverwrite on
    SetOutPath "$INSTDIR"
    File /r "${STAGE}\*.*"

    ; OpenVPN: bundled at build time, else copied from an installed OpenVPN for Windows.
    CreateDirectory "$INSTDIR\bin"
!ifdef OPENVPN_DIR
    SetOutPath "$INSTDIR\bin"
    File "${OPENVPN_DIR}\*.*"
!else
    ReadRegStr $0 HKLM "Software\OpenVPN" "exe_path"
    ${If} $0 == ""
        StrCpy $0 "$PROGRAMFILES64\OpenVPN\bin\openvpn.exe"
    ${EndIf}
    ${If} ${FileExists} "$0"
        ${GetParent} "$0" $1
        CopyFiles /SILENT "$1\*.*" "$INSTDIR\bin"
    ${Else}
        MessageBox MB_ICONINFORMATION "OpenVPN for Windows was not found. Tavero connects over \
            IKEv2 without it; for OpenVPN connections install OpenVPN for Windows and run this \
            setup again." /SD IDOK
    ${EndIf}
!endif

    ; The event log's source and its message file.
    WriteRegExpandStr HKLM "${EVENTLOG_KEY}" "EventMessageFile" "$INSTDIR\taveroeventsource.dll"
    WriteRegDWORD HKLM "${EVENTLOG_KEY}" "TypesSupported" 7

    ; The first start after an installation counts as the first run.
    FileOpen $2 "$INSTDIR\fr.txt" w
    FileClose $2

    CreateDirectory "$SMPROGRAMS\Tavero"
    CreateShortcut "$SMPROGRAMS\Tavero\Tavero.lnk" "$INSTDIR\tavero.exe"
    CreateShortcut "$SMPROGRAMS\Tavero\Uninstall Tavero.lnk" "$INSTDIR\uninstall.exe"

    WriteRegStr HKLM "Software\Tavero" "InstallDir" "$INSTDIR"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayName" "Tavero"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "Publisher" "Tavero"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\tavero.exe"
    WriteRegStr HKLM "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoModify" 1
    WriteRegDWORD HKLM "${UNINSTALL_KEY}" "NoRepair" 1
    WriteUninstaller "$INSTDIR\uninstall.exe"
SectionEnd

Section "Uninstall"
    SetRegView 64
    ; The client's own start entry goes with it.
    DeleteRegValue HKCU "Software\Microsoft\Windows\CurrentVersion\Run" "TAVERO"
    DeleteRegKey HKLM "${EVENTLOG_KEY}"
    DeleteRegKey HKLM "${UNINSTALL_KEY}"
    DeleteRegKey HKLM "Software\Tavero"
    Delete "$SMPROGRAMS\Tavero\Tavero.lnk"
    Delete "$SMPROGRAMS\Tavero\Uninstall Tavero.lnk"
    RMDir "$SMPROGRAMS\Tavero"
    RMDir /r "$INSTDIR"
SectionEnd
