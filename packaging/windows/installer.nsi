; The setup program for Windows. It installs Worklog Remote for the user who runs it, without
; administrator rights, and contains the uninstaller.
;
; Defines that makensis needs:
;   VERSION   such as 1.2.3
;   FILES     the folder with the files to install
;   ICON      the program's icon
;   PICTURE   the picture next to the texts of the last page
;   OUTPUT    the setup program to write
;
; Exit codes, of the uninstaller, too: 0 done, 1 the user canceled, 2 failed partway, 3 Worklog
; Remote is running or one of its files is in use, 4 the folder cannot be written, 5 this Windows
; is too old.
Target amd64-unicode
Unicode true
SetCompressor /SOLID lzma
; The programs have much in common, which is found only within this many megabytes.
SetCompressorDictSize 32
; The same files give the same setup program, whenever they were built.
SetDateSave off

!include MUI2.nsh
!include LogicLib.nsh
!include WinVer.nsh

!define NAME "Worklog Remote"
!define DEVELOPERS "The Worklog Remote developers"
!define MENU_FOLDER "$SMPROGRAMS\${NAME}"
!define APPS_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\WorklogRemote"
!define SETTINGS_KEY "Software\WorklogRemote"
!define STAGE "$INSTDIR\setup.new"

Name "${NAME}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
ManifestSupportedOS Win10
ManifestDPIAware true
ManifestLongPathAware true
BrandingText "${NAME} ${VERSION}"
AllowSkipFiles off
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "${APPS_KEY}" "InstallLocation"

VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey "CompanyName" "${DEVELOPERS}"
VIAddVersionKey "FileDescription" "${NAME} Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 The Worklog Remote authors"
VIAddVersionKey "ProductName" "${NAME}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${PICTURE}"
!define MUI_ABORTWARNING

!define MUI_DIRECTORYPAGE_TEXT_TOP "${NAME} is installed for you alone, into the folder below; \
your databases will lie there, too. If the folder holds an older version already, only the \
program is replaced: your entries and settings stay."
!define MUI_PAGE_CUSTOMFUNCTION_LEAVE CheckChosenFolder
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_TITLE "${NAME} is installed"
!define MUI_FINISHPAGE_TEXT "You find it in the Start menu."
!define MUI_FINISHPAGE_RUN "$INSTDIR\WorklogRemote.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start ${NAME} now"
!insertmacro MUI_PAGE_FINISH

!define MUI_UNCONFIRMPAGE_TEXT_TOP "${NAME} will be removed from this folder. If your databases \
are in it, you will be asked first whether they are to stay."
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES

!insertmacro MUI_LANGUAGE "English"

; Everything that is installed, but for the uninstaller.
!macro EachFile action
    !insertmacro ${action} "WorklogRemote.exe"
    !insertmacro ${action} "WL.HLP"
    !insertmacro ${action} "worklog-report.exe"
    !insertmacro ${action} "worklog-report.txt"
    !insertmacro ${action} "pvxwin32.exe"
    !insertmacro ${action} "README.txt"
    !insertmacro ${action} "LICENSE.txt"
    !insertmacro ${action} "THIRD-PARTY.txt"
!macroend

; Asks until the file can be written, or else ends with nothing changed.
!macro EndWhileHeld file message
    ${DoWhile} ${FileExists} "$INSTDIR\${file}"
        ClearErrors
        FileOpen $0 "$INSTDIR\${file}" a
        ${IfNot} ${Errors}
            FileClose $0
            ${ExitDo}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "${message}" /SD IDCANCEL IDCANCEL`
            SetErrorLevel 3
            Quit
        ${EndIf}
    ${Loop}
!macroend

!macro EndWhileFileIsHeld file
    !insertmacro EndWhileHeld "${file}" "${file} is in use or write-protected:$\r$\n\
$INSTDIR$\r$\n$\r$\nPlease close the program that uses it, and choose Retry."
!macroend

; The program holds its lock file as long as it runs.
!macro EndWhileItRuns un
Function ${un}EndWhileItRuns
    !insertmacro EndWhileHeld "WLRemote.txt" "${NAME} is running in this folder:$\r$\n\
$INSTDIR$\r$\n$\r$\nPlease close it, and choose Retry."
    !insertmacro EachFile EndWhileFileIsHeld
FunctionEnd
!macroend
!insertmacro EndWhileItRuns ""
!insertmacro EndWhileItRuns "un."

; Sets the error flag unless a file can be made in the folder.
Function TryToWrite
    ClearErrors
    CreateDirectory "$INSTDIR"
    GetTempFileName $0 "$INSTDIR"
    ${IfNot} ${Errors}
        Delete $0
    ${Else}
        RMDir "$INSTDIR"
        SetErrors
    ${EndIf}
FunctionEnd

!define CANNOT_WRITE "Files cannot be written here:$\r$\n$INSTDIR$\r$\n$\r$\nPlease choose \
another folder."

Function CheckChosenFolder
    Call TryToWrite
    ${If} ${Errors}
        MessageBox MB_OK|MB_ICONEXCLAMATION "${CANNOT_WRITE}"
        Abort
    ${EndIf}
    Call EndWhileItRuns
FunctionEnd

; Sets the error flag when the command line names a folder that was not accepted: NSIS silently uses
; its default when the folder is impossible or in quotes.
Function TakeTheFolderOfTheCommandLine
    System::Call 'kernel32::GetCommandLineW() w .r0'
    StrLen $1 $0
    ${ForEach} $2 0 $1 + 1
        StrCpy $3 $0 3 $2
        ${If} $3 S== "/D="
            IntOp $2 $2 + 3
            StrCpy $3 $0 "" $2
            ClearErrors
            ${If} $3 != $INSTDIR
            ${AndIf} $3 != "$INSTDIR\"
                SetErrors
            ${EndIf}
            Return
        ${EndIf}
    ${Next}
    ClearErrors
FunctionEnd

Function .onInit
    ${IfNot} ${AtLeastBuild} 17763
        MessageBox MB_OK|MB_ICONSTOP "${NAME} needs Windows 10, version 1809, or a later one." \
            /SD IDOK
        SetErrorLevel 5
        Quit
    ${EndIf}
    ; Who installs silently sees no page on which the folder would be looked at.
    ${If} ${Silent}
        Call TakeTheFolderOfTheCommandLine
        ${If} ${Errors}
            SetErrorLevel 4
            Quit
        ${EndIf}
        Call TryToWrite
        ${If} ${Errors}
            SetErrorLevel 4
            Quit
        ${EndIf}
        Call EndWhileItRuns
    ${EndIf}
FunctionEnd

!macro Stage file
    File "${FILES}/${file}"
!macroend

; Under its name a file is whole at any moment.
!macro Bring file
    StrCpy $0 "${STAGE}\${file}"
    StrCpy $1 "$INSTDIR\${file}"
    ${Do}
        System::Call 'kernel32::MoveFileExW(w r0, w r1, i 9) i .r2' ; replacing, on the disk
        ${If} $2 <> 0
            ${ExitDo}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
            "$1 cannot be written." /SD IDCANCEL IDCANCEL`
            Abort
        ${EndIf}
    ${Loop}
!macroend

Section "-${NAME}" Program
    ; First everything is unpacked beside its place: what is there already stays whole should the
    ; disk be full.
    RMDir /r "${STAGE}"
    SetOutPath "${STAGE}"
    !insertmacro EachFile Stage
    ClearErrors
    WriteUninstaller "${STAGE}\uninstall.exe"
    ${If} ${Errors}
        Abort
    ${EndIf}
    SetOutPath "$INSTDIR"
    !insertmacro EachFile Bring
    !insertmacro Bring "uninstall.exe"
    RMDir "${STAGE}"

    CreateDirectory "${MENU_FOLDER}"
    CreateShortcut "${MENU_FOLDER}\${NAME}.lnk" "$INSTDIR\WorklogRemote.exe" "" "" 0 \
        SW_SHOWNORMAL "" "Write down hours and expenses away from the office"
    CreateShortcut "${MENU_FOLDER}\Uninstall ${NAME}.lnk" "$INSTDIR\uninstall.exe"

    SectionGetSize ${Program} $0
    WriteRegStr HKCU "${APPS_KEY}" "DisplayName" "${NAME}"
    WriteRegStr HKCU "${APPS_KEY}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${APPS_KEY}" "Publisher" "${DEVELOPERS}"
    WriteRegStr HKCU "${APPS_KEY}" "DisplayIcon" "$INSTDIR\WorklogRemote.exe"
    WriteRegStr HKCU "${APPS_KEY}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${APPS_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${APPS_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${APPS_KEY}" "EstimatedSize" $0
    WriteRegDWORD HKCU "${APPS_KEY}" "NoModify" 1
    WriteRegDWORD HKCU "${APPS_KEY}" "NoRepair" 1
SectionEnd

Function .onInstFailed
    SetOutPath "$TEMP"
    RMDir /r "${STAGE}"
    RMDir "$INSTDIR" ; unless something is in it
FunctionEnd

Function un.onInit
    Call un.EndWhileItRuns
FunctionEnd

; Sets the error flag where none of the user's data is.
Function un.FindData
    ClearErrors
    ${If} ${FileExists} "$INSTDIR\*.db"
    ${OrIf} ${FileExists} "$INSTDIR\backup\*.*"
    ${OrIf} ${FileExists} "$INSTDIR\mas90.ini"
        Return
    ${EndIf}
    SetErrors
FunctionEnd

!macro DeleteDatabases folder
    Delete "${folder}\*.db"
    Delete "${folder}\*.db-journal"
    Delete "${folder}\*.db.new"
    Delete "${folder}\*.db.new-journal"
!macroend

; Deletes what the program has written, and no other file next to it.
Function un.RemoveData
    !insertmacro DeleteDatabases "$INSTDIR"
    Delete "$INSTDIR\mas90.ini"
    Delete "$INSTDIR\mas90.ini.new"
    FindFirst $0 $1 "$INSTDIR\backup\*"
    ${DoWhile} $1 != ""
        ${If} $1 != "."
        ${AndIf} $1 != ".."
            !insertmacro DeleteDatabases "$INSTDIR\backup\$1"
            Delete "$INSTDIR\backup\$1\unfinished.json"
            RMDir "$INSTDIR\backup\$1"
        ${EndIf}
        FindNext $0 $1
    ${Loop}
    FindClose $0
    RMDir "$INSTDIR\backup"
FunctionEnd

!macro Remove file
    Delete "$INSTDIR\${file}"
!macroend

Var RemoveData

Section "Uninstall"
    ; It may have been started while the question was shown.
    Call un.EndWhileItRuns
    StrCpy $RemoveData no
    Call un.FindData
    ${IfNot} ${Errors}
    ${AndIf} ${Cmd} `MessageBox MB_YESNO|MB_ICONEXCLAMATION|MB_DEFBUTTON2 \
        "Your data is in this folder, too:$\r$\n$INSTDIR$\r$\n$\r$\nThe databases may hold entries \
that have not been uploaded to accounting yet.$\r$\n$\r$\nDo you want to remove the databases, \
their copies and your settings as well? Nothing brings them back." /SD IDNO IDYES`
        StrCpy $RemoveData yes
    ${EndIf}

    SetOutPath "$TEMP" ; the working folder of a process cannot be removed
    !insertmacro EachFile Remove
    Delete "$INSTDIR\WLRemote.txt"
    Delete "$INSTDIR\exchange.lock"
    Delete "$INSTDIR\synchronization.lock"
    RMDir /r "${STAGE}" ; of a setup program that was killed
    ${If} $RemoveData == yes
        Call un.RemoveData
    ${EndIf}

    ; The entry in Apps and the Start menu are of the folder that was installed into last, which
    ; may be another one.
    ReadRegStr $0 HKCU "${APPS_KEY}" "InstallLocation"
    ${IfNot} ${FileExists} "$0\WorklogRemote.exe"
        Delete "${MENU_FOLDER}\${NAME}.lnk"
        Delete "${MENU_FOLDER}\Uninstall ${NAME}.lnk"
        RMDir "${MENU_FOLDER}"
        DeleteRegKey HKCU "${APPS_KEY}"
        ${If} $RemoveData == yes
            DeleteRegKey HKCU "${SETTINGS_KEY}"
        ${EndIf}
    ${EndIf}

    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR" ; unless something is in it
SectionEnd
