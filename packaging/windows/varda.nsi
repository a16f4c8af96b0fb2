; The installer: for one user, without an administrator's rights. It installs over an older version, and what the user has put
; into Data and Log stays, on removing too. scripts/build-windows calls makensis with VERSION, FILES (the folder of the zip),
; ICONS and OUTPUT.
;
; Silently: varda-<version>-setup.exe /S, Uninstall.exe /S; the folder by /D=<folder> as the last word.

Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user
ManifestDPIAware true
ManifestSupportedOS Win10

!include MUI2.nsh
!include LogicLib.nsh

!define TITLE "VR-Series PLC Test & Simulator"
!define BUTTON_TITLE "VR-Series PLC Test && Simulator" ; where a single & underlines
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Varda"
!define CLASSES "Software\Classes"

Name "${TITLE}" "${BUTTON_TITLE}"
OutFile "${OUTPUT}"
InstallDir "$LOCALAPPDATA\Programs\Varda"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
BrandingText "${BUTTON_TITLE} ${VERSION}"

VIProductVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "${TITLE}"
VIAddVersionKey "FileDescription" "Installer of ${TITLE}"
VIAddVersionKey "CompanyName" "Varda developers"
VIAddVersionKey "LegalCopyright" "Copyright (c) 2026 the Varda developers, MIT License"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define MUI_ICON "${ICONS}\varda.ico"
!define MUI_UNICON "${ICONS}\varda.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${NSISDIR}\Contrib\Graphics\Wizard\nsis3-grey.bmp"
!define MUI_FINISHPAGE_RUN "$INSTDIR\varda.exe"
!define MUI_FINISHPAGE_RUN_TEXT "Start the program now"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Those of an older version; a folder of that name that is somebody else's stays.
!macro RemoveLicences
  ${If} ${FileExists} "$INSTDIR\Licences\Varda.txt"
    RMDir /r "$INSTDIR\Licences"
  ${EndIf}
!macroend

; A program that runs cannot be replaced. Asked before anything is touched.
!macro WaitUntilClosed PROGRAM
  ${Do}
    ${IfNot} ${FileExists} "$INSTDIR\${PROGRAM}"
      ${Break}
    ${EndIf}
    ClearErrors
    FileOpen $0 "$INSTDIR\${PROGRAM}" a
    ${IfNot} ${Errors}
      FileClose $0
      ${Break}
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION \
      "${PROGRAM} is running, or its folder cannot be written to. Close it, and press Retry." \
      /SD IDCANCEL IDRETRY +3
    SetErrorLevel 2
    Abort
  ${Loop}
!macroend

!macro KindOfFile ID TEXT ICON ENDING
  WriteRegStr HKCU "${CLASSES}\${ID}" "" "${TEXT}"
  WriteRegStr HKCU "${CLASSES}\${ID}\DefaultIcon" "" "$INSTDIR\${ICON}"
  WriteRegStr HKCU "${CLASSES}\${ID}\shell\open\command" "" '"$INSTDIR\varda.exe" "%1"'
  WriteRegStr HKCU "${CLASSES}\${ENDING}\OpenWithProgids" "${ID}" ""
  WriteRegStr HKCU "${CLASSES}\Applications\varda.exe\SupportedTypes" "${ENDING}" ""
!macroend

; An example that the user has changed is the user's: what was installed is told by the time of its last change.
!macro RemoveUntouchedExample NAME
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}\Examples" "${NAME}"
  GetFileTime "$INSTDIR\Data\${NAME}" $1 $2
  ${If} $0 == "$1 $2"
    Delete "$INSTDIR\Data\${NAME}"
  ${EndIf}
!macroend

!macro InstallExample NAME
  !insertmacro RemoveUntouchedExample "${NAME}"
  ${IfNot} ${FileExists} "$INSTDIR\Data\${NAME}"
    SetOutPath "$INSTDIR\Data"
    File "${FILES}\Data\${NAME}"
    GetFileTime "$INSTDIR\Data\${NAME}" $1 $2
    WriteRegStr HKCU "${UNINSTALL_KEY}\Examples" "${NAME}" "$1 $2"
  ${EndIf}
!macroend

!macro ForgetKindOfFile ID ENDING
  DeleteRegKey HKCU "${CLASSES}\${ID}"
  DeleteRegValue HKCU "${CLASSES}\${ENDING}\OpenWithProgids" "${ID}"
  DeleteRegKey /ifempty HKCU "${CLASSES}\${ENDING}\OpenWithProgids"
  DeleteRegKey /ifempty HKCU "${CLASSES}\${ENDING}"
!macroend

Section
  !insertmacro WaitUntilClosed "varda.exe"
  !insertmacro WaitUntilClosed "varda-cli.exe"
  SetOutPath "$INSTDIR"
  !insertmacro RemoveLicences
  File /r /x Data /x Log "${FILES}\*"
  File "${ICONS}\packets.ico" "${ICONS}\scenario.ico"
  CreateDirectory "$INSTDIR\Log"
  !insertmacro InstallExample "example-reads.ini"
  !insertmacro InstallExample "example-writes.ini"
  !insertmacro InstallExample "example.scn"
  !insertmacro InstallExample "example.expect"
  !insertmacro InstallExample "example-memory.csv"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\Uninstall.exe"

  CreateShortcut "$SMPROGRAMS\${TITLE}.lnk" "$INSTDIR\varda.exe"

  ; "Open with" offers the program; .ini stays what it was.
  WriteRegStr HKCU "${CLASSES}\Applications\varda.exe" "FriendlyAppName" "${TITLE}"
  WriteRegStr HKCU "${CLASSES}\Applications\varda.exe\shell\open\command" "" '"$INSTDIR\varda.exe" "%1"'
  !insertmacro KindOfFile "Varda.Packets" "Prepared pairs of request and answer" "packets.ico" ".ini"
  !insertmacro KindOfFile "Varda.Scenario" "Scenario of frames" "scenario.ico" ".scn"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "${TITLE}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\varda.exe"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Varda developers"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\Uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\Uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  SectionGetSize 0 $0
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" $0
SectionEnd

Section Uninstall
  !insertmacro WaitUntilClosed "varda.exe"
  !insertmacro WaitUntilClosed "varda-cli.exe"
  !insertmacro RemoveUntouchedExample "example-reads.ini"
  !insertmacro RemoveUntouchedExample "example-writes.ini"
  !insertmacro RemoveUntouchedExample "example.scn"
  !insertmacro RemoveUntouchedExample "example.expect"
  !insertmacro RemoveUntouchedExample "example-memory.csv"
  Delete "$INSTDIR\varda.exe"
  Delete "$INSTDIR\varda-cli.exe"
  Delete "$INSTDIR\VARDA.CHM"
  Delete "$INSTDIR\packets.ico"
  Delete "$INSTDIR\scenario.ico"
  !insertmacro RemoveLicences
  Delete "$INSTDIR\Uninstall.exe"
  RMDir "$INSTDIR\Data" ; each of these only where nothing is left in it
  RMDir "$INSTDIR\Log"
  RMDir "$INSTDIR"

  Delete "$SMPROGRAMS\${TITLE}.lnk"
  !insertmacro ForgetKindOfFile "Varda.Packets" ".ini"
  !insertmacro ForgetKindOfFile "Varda.Scenario" ".scn"
  DeleteRegKey HKCU "${CLASSES}\Applications\varda.exe"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
SectionEnd
