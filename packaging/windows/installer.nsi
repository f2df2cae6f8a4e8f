; The installer, for one user and without administrator's rights. make beside this file defines:
;   VERSION           such as 1.5.1
;   MAKER, HOME_PAGE  what the system shows of them
;   FOLDER            what is installed
;   REMOVE_FILES      a file with the lines that delete just what was installed
;   SIZE              of that, in KiB
;   OUTPUT            the installer's name
;   ICON              the program's
Target amd64-unicode ; as the program is
SetCompressor /SOLID lzma
SetDateSave off ; the same files make the same installer
RequestExecutionLevel user
ManifestDPIAware true

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include WinVer.nsh

!define ABOUT "Software\Microsoft\Windows\CurrentVersion\Uninstall\Zint"
!define PROGRAM_PATH "Software\Microsoft\Windows\CurrentVersion\App Paths\zint-obd.exe"
!define DESIGN_KIND "Zint.Design"

Name "Zint"
OutFile "${OUTPUT}"
BrandingText "Zint ${VERSION}"
InstallDir "$LOCALAPPDATA\Programs\Zint"
InstallDirRegKey HKCU "${ABOUT}" InstallLocation

VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Zint"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Zint installer"
VIAddVersionKey LegalCopyright "GNU General Public License, version 3 or later"

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${NSISDIR}\Contrib\Graphics\Wizard\nsis3-grey.bmp"
!define MUI_WELCOMEPAGE_TEXT "Zint ${VERSION} is installed for you alone; administrator's rights are not needed.$\r$\n$\r$\nAn older version is replaced. Your designs, logs and reports, the database of descriptions and the settings stay.$\r$\n$\r$\nClick Next to continue."
!define MUI_FINISHPAGE_RUN "$INSTDIR\zint-obd.exe"
!define MUI_UNCONFIRMPAGE_TEXT_TOP "Zint is removed. Your designs, logs and reports, the database of descriptions and the settings stay."
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English

Function .onInit
  ${IfNot} ${AtLeastBuild} 18362 ; from there on UTF-8 can be a program's character set
    MessageBox MB_OK|MB_ICONSTOP "Zint needs Windows 10, version 1903, or later." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd

; Half of a program's files would stay those of the old version while it runs in the folder $R0.
!macro TryToWrite file ; sets the error flag where it can't be done
  ${If} ${FileExists} "${file}"
    FileOpen $0 "${file}" a
    FileClose $0
  ${EndIf}
!macroend
!macro RequireClosedProgram un
Function ${un}RequireClosedProgram
  again:
  ClearErrors
  !insertmacro TryToWrite "$R0\zint-obd.exe"
  !insertmacro TryToWrite "$R0\zint-obd.com"
  ${If} ${Errors}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Zint is running, or $R0 can't be written. Close the program, then try again." /SD IDCANCEL IDRETRY again
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd
!macroend
!insertmacro RequireClosedProgram ""
!insertmacro RequireClosedProgram "un."

Section
  StrCpy $R0 "$INSTDIR"
  Call RequireClosedProgram
  ; An older version may have files that this one lacks, and another folder.
  ReadRegStr $R0 HKCU "${ABOUT}" InstallLocation
  ${If} $R0 != ""
  ${AndIf} ${FileExists} "$R0\uninstall.exe"
    Call RequireClosedProgram
    ExecWait '"$R0\uninstall.exe" /S _?=$R0'
    Delete "$R0\uninstall.exe" ; which could not delete itself
    RMDir "$R0"
  ${EndIf}

  ClearErrors
  SetOutPath "$INSTDIR"
  File /r "${FOLDER}/*"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "Not all files could be written into $INSTDIR. Zint is not installed." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
  WriteUninstaller "$INSTDIR\uninstall.exe"

  CreateDirectory "$SMPROGRAMS\Zint"
  SetOutPath "$DOCUMENTS" ; where the program starts
  CreateShortCut "$SMPROGRAMS\Zint\Zint.lnk" "$INSTDIR\zint-obd.exe" "" "" 0 SW_SHOWNORMAL "" "OBD-II diagnostics"
  CreateShortCut "$SMPROGRAMS\Zint\Zint command line.lnk" "$SYSDIR\cmd.exe" \
    '/k "set "PATH=%PATH%;$INSTDIR"& zint-obd --help"' \
    "$INSTDIR\zint-obd.exe" 0 SW_SHOWNORMAL "" "A console that knows zint-obd"
  SetOutPath "$INSTDIR"

  WriteRegStr HKCU "${PROGRAM_PATH}" "" "$INSTDIR\zint-obd.exe"
  WriteRegStr HKCU "Software\Classes\${DESIGN_KIND}" "" "Zint polling design"
  WriteRegStr HKCU "Software\Classes\${DESIGN_KIND}\DefaultIcon" "" "$INSTDIR\zint-obd.exe,0"
  WriteRegStr HKCU "Software\Classes\${DESIGN_KIND}\shell\open\command" "" '"$INSTDIR\zint-obd.exe" "%1"'
  WriteRegStr HKCU "Software\Classes\.obc\OpenWithProgids" "${DESIGN_KIND}" ""
  ReadRegStr $0 HKCU "Software\Classes\.obc" ""
  ReadRegStr $1 HKLM "Software\Classes\.obc" ""
  ${If} "$0$1" == "" ; another program's files stay its own
    WriteRegStr HKCU "Software\Classes\.obc" "" "${DESIGN_KIND}"
  ${EndIf}
  ${RefreshShellIcons}

  WriteRegStr HKCU "${ABOUT}" DisplayName "Zint"
  WriteRegStr HKCU "${ABOUT}" DisplayVersion "${VERSION}"
  WriteRegStr HKCU "${ABOUT}" Publisher "${MAKER}"
  WriteRegStr HKCU "${ABOUT}" URLInfoAbout "${HOME_PAGE}"
  WriteRegStr HKCU "${ABOUT}" DisplayIcon "$INSTDIR\zint-obd.exe"
  WriteRegStr HKCU "${ABOUT}" InstallLocation "$INSTDIR"
  WriteRegStr HKCU "${ABOUT}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${ABOUT}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${ABOUT}" EstimatedSize ${SIZE}
  WriteRegDWORD HKCU "${ABOUT}" NoModify 1
  WriteRegDWORD HKCU "${ABOUT}" NoRepair 1
SectionEnd

Section Uninstall
  StrCpy $R0 "$INSTDIR"
  Call un.RequireClosedProgram
  !include "${REMOVE_FILES}"
  Delete "$INSTDIR\uninstall.exe"
  SetOutPath "$TEMP" ; nothing stands in the folder any more
  RMDir "$INSTDIR"   ; unless somebody keeps files of their own there
  RMDir "$LOCALAPPDATA\Programs" ; where this one was the only one
  Delete "$SMPROGRAMS\Zint\Zint.lnk"
  Delete "$SMPROGRAMS\Zint\Zint command line.lnk"
  RMDir "$SMPROGRAMS\Zint"

  ReadRegStr $0 HKCU "Software\Classes\.obc" ""
  ${If} $0 == "${DESIGN_KIND}"
    DeleteRegValue HKCU "Software\Classes\.obc" ""
  ${EndIf}
  DeleteRegValue HKCU "Software\Classes\.obc\OpenWithProgids" "${DESIGN_KIND}"
  DeleteRegKey /ifempty HKCU "Software\Classes\.obc\OpenWithProgids"
  DeleteRegKey /ifempty HKCU "Software\Classes\.obc"
  DeleteRegKey HKCU "Software\Classes\${DESIGN_KIND}"
  DeleteRegKey HKCU "${PROGRAM_PATH}"
  DeleteRegKey HKCU "${ABOUT}"
  ${RefreshShellIcons}
SectionEnd
