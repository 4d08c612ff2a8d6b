; The installer for one user, without administrator's rights: program, start menu, file type with its
; icon, uninstaller. Given on the command line: VERSION, FOLDER (what is installed), FILES (the list of
; commands that remove exactly that again), OUTPUT, ICONS, LICENCE (of the installer's own parts). /S installs silently, /D=FOLDER elsewhere.
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
!include "MUI2.nsh"
!include "FileFunc.nsh"

!define NAME "Ladderwise"
!define TYPE "Ladderwise.Design"
!define ENDING ".tk_ldfilt"
!define UNINSTALL "Software\Microsoft\Windows\CurrentVersion\Uninstall\${NAME}"
!define CLASSES "Software\Classes"

Name "${NAME} ${VERSION}"
OutFile "${OUTPUT}"
RequestExecutionLevel user
InstallDir "$LOCALAPPDATA\Programs\${NAME}"
InstallDirRegKey HKCU "Software\${NAME}" "Folder"
ManifestDPIAware true
VIProductVersion "${VERSION}.0.0"
VIAddVersionKey /LANG=1033 "ProductName" "${NAME}"
VIAddVersionKey /LANG=1033 "ProductVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileVersion" "${VERSION}"
VIAddVersionKey /LANG=1033 "FileDescription" "Installs ${NAME} for one user"
VIAddVersionKey /LANG=1033 "LegalCopyright" "MIT licence"

!define MUI_ICON "${ICONS}\ladderwise.ico"
!define MUI_UNICON "${ICONS}\ladderwise.ico"
!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_RUN "$INSTDIR\ladderwise.exe"
!insertmacro MUI_PAGE_LICENSE "${FOLDER}\LICENSE"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; A program that runs keeps its file; better no installation than half a one.
!macro StopIfRunning
    ${If} ${FileExists} "$INSTDIR\ladderwise.exe"
        ClearErrors
        FileOpen $0 "$INSTDIR\ladderwise.exe" a
        ${If} ${Errors}
            MessageBox MB_OK|MB_ICONEXCLAMATION "Please close ${NAME} first." /SD IDOK
            SetErrorLevel 2
            Abort
        ${EndIf}
        FileClose $0
    ${EndIf}
!macroend

Section
    !insertmacro StopIfRunning
    SetOutPath "$INSTDIR"
    SetOverwrite on
    File /r "${FOLDER}\*"
    SetOutPath "$INSTDIR\licences"
    File /oname=nsis.txt "${LICENCE}"  ; what makes the installer is in it
    SetOutPath "$INSTDIR"
    WriteUninstaller "$INSTDIR\uninstall.exe"
    WriteRegStr HKCU "Software\${NAME}" "Folder" "$INSTDIR"

    CreateShortcut "$SMPROGRAMS\${NAME}.lnk" "$INSTDIR\ladderwise.exe"

    ; The file type: opened by a double click, and offered for opening where another has that.
    WriteRegStr HKCU "${CLASSES}\${TYPE}" "" "${NAME} design"
    WriteRegStr HKCU "${CLASSES}\${TYPE}\DefaultIcon" "" "$INSTDIR\ladderwise.exe,1"
    WriteRegStr HKCU "${CLASSES}\${TYPE}\shell\open\command" "" '"$INSTDIR\ladderwise.exe" "%1"'
    WriteRegStr HKCU "${CLASSES}\${ENDING}" "" "${TYPE}"
    WriteRegStr HKCU "${CLASSES}\${ENDING}\OpenWithProgids" "${TYPE}" ""

    WriteRegStr HKCU "${UNINSTALL}" "DisplayName" "${NAME}"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayVersion" "${VERSION}"
    WriteRegStr HKCU "${UNINSTALL}" "DisplayIcon" "$INSTDIR\ladderwise.exe"
    WriteRegStr HKCU "${UNINSTALL}" "InstallLocation" "$INSTDIR"
    WriteRegStr HKCU "${UNINSTALL}" "UninstallString" '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU "${UNINSTALL}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU "${UNINSTALL}" "NoModify" 1
    WriteRegDWORD HKCU "${UNINSTALL}" "NoRepair" 1
    ${GetSize} "$INSTDIR" "/S=0K" $0 $1 $2
    WriteRegDWORD HKCU "${UNINSTALL}" "EstimatedSize" "$0"
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd

; What was installed and the settings go; designs, wherever they lie, stay, and with them their folder.
Section "Uninstall"
    !insertmacro StopIfRunning
    !include "${FILES}"
    Delete "$INSTDIR\Settings.txt"
    Delete "$INSTDIR\Settings.txt.lock"
    Delete "$INSTDIR\Windows.ini"
    Delete "$INSTDIR\uninstall.exe"
    RMDir "$INSTDIR"
    Delete "$SMPROGRAMS\${NAME}.lnk"

    ReadRegStr $0 HKCU "${CLASSES}\${ENDING}" ""
    ${If} $0 == "${TYPE}"
        DeleteRegValue HKCU "${CLASSES}\${ENDING}" ""
    ${EndIf}
    DeleteRegValue HKCU "${CLASSES}\${ENDING}\OpenWithProgids" "${TYPE}"
    DeleteRegKey /ifempty HKCU "${CLASSES}\${ENDING}\OpenWithProgids"
    DeleteRegKey /ifempty HKCU "${CLASSES}\${ENDING}"
    DeleteRegKey HKCU "${CLASSES}\${TYPE}"
    DeleteRegKey HKCU "${UNINSTALL}"
    DeleteRegKey HKCU "Software\${NAME}"
    System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
SectionEnd
