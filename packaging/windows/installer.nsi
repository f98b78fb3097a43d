; SPDX-FileCopyrightText: The Maintenance LogBook authors
; SPDX-License-Identifier: MIT
;
; The installer of the Windows edition: one folder with all programs, an entry in the list of
; installed programs, and the removal. Logs, settings and the workstation's files are never touched.
; Given on the command line: VERSION, SOURCE (the folder to install), TARGET (the file to make).
Unicode true
!include "MUI2.nsh"
!include "x64.nsh"

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\MaintenanceLogBook"

Name "Maintenance LogBook ${VERSION}"
OutFile "${TARGET}"
InstallDir "$PROGRAMFILES64\Maintenance LogBook"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
RequestExecutionLevel admin
SetCompressor /SOLID lzma

!insertmacro MUI_PAGE_LICENSE "${SOURCE}\licences\maintenance-logbook.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

Function .onInit
  ${IfNot} ${RunningX64}
    MessageBox MB_OK|MB_ICONSTOP "Maintenance LogBook needs a 64-bit Windows." /SD IDOK
    Abort
  ${EndIf}
  SetRegView 64
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section
  ; The tie to a content server is the workstation's own: one that is there stays.
  SetOutPath "$INSTDIR"
  SetOverwrite on
  File /r /x arecm.cfg "${SOURCE}\*.*"
  SetOverwrite off
  File "${SOURCE}\arecm.cfg"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${KEY}" "DisplayName" "Maintenance LogBook"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
SectionEnd

Section "Uninstall"
  Delete "$INSTDIR\logbook.exe"
  Delete "$INSTDIR\logbookctl.exe"
  Delete "$INSTDIR\ecm-agent.exe"
  Delete "$INSTDIR\quorex-host.exe"
  Delete "$INSTDIR\README.md"
  RMDir /r "$INSTDIR\manual"
  RMDir /r "$INSTDIR\licences"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
