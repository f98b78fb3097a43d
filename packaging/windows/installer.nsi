; SPDX-FileCopyrightText: The Maintenance LogBook authors
; SPDX-License-Identifier: MIT
;
; The installer of the Windows edition: one folder with all programs, an entry in the list of
; installed programs, and the removal. Logs, settings and the workstation's files are never touched.
; Given on the command line: VERSION, SOURCE (the folder to install), ICON, REMOVAL (the
; commands that take the files of its folders away), TARGET (the file to make).
; A program of 64 bits, as those that it installs.
Target amd64-unicode
Unicode true
!include "MUI2.nsh"
!include "LogicLib.nsh"
!include "WinVer.nsh"

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\MaintenanceLogBook"

Name "Maintenance LogBook ${VERSION}"
OutFile "${TARGET}"
InstallDir "$PROGRAMFILES64\Maintenance LogBook"
InstallDirRegKey HKLM "${KEY}" "InstallLocation"
RequestExecutionLevel admin
SetCompressor /SOLID lzma

; What Windows shows of the installer's own file.
!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
VIProductVersion "${VERSION}.0"
VIFileVersion "${VERSION}.0"
VIAddVersionKey "ProductName" "Maintenance LogBook"
VIAddVersionKey "ProductVersion" "${VERSION}"
VIAddVersionKey "FileDescription" "Installer of the Maintenance LogBook"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "Copyright (c) The Maintenance LogBook authors"

!insertmacro MUI_PAGE_LICENSE "${SOURCE}\licences\maintenance-logbook.txt"
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

; Ends before anything is changed if a program of the folder runs: its file could neither be replaced
; nor deleted, and half of the edition would be left.
!macro RequireIdle PROGRAM
  ${If} ${FileExists} "$INSTDIR\${PROGRAM}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${PROGRAM}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONSTOP "${PROGRAM} is running. End it, then try again." /SD IDOK
      SetErrorLevel 4
      Quit
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend
!macro RequireAllIdle
  !insertmacro RequireIdle "logbook.exe"
  !insertmacro RequireIdle "logbookctl.exe"
  !insertmacro RequireIdle "ecm-agent.exe"
  !insertmacro RequireIdle "quorex-host.exe"
!macroend

Function .onInit
  ${IfNot} ${AtLeastWin10}
    MessageBox MB_OK|MB_ICONSTOP "The programs need Windows 10 or later." /SD IDOK
    SetErrorLevel 3
    Quit
  ${EndIf}
  SetRegView 64
FunctionEnd

Function un.onInit
  SetRegView 64
FunctionEnd

Section
  !insertmacro RequireAllIdle
  ; The tie to a content server is the workstation's own: one that is there stays. The copy tells
  ; the removal whether it is still as it came.
  SetOutPath "$INSTDIR"
  SetOverwrite on
  File /r /x arecm.cfg "${SOURCE}\*.*"
  SetOverwrite off
  File "${SOURCE}\arecm.cfg"
  SetOverwrite on
  File "/oname=arecm.default" "${SOURCE}\arecm.cfg"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  WriteRegStr HKLM "${KEY}" "DisplayName" "Maintenance LogBook"
  WriteRegStr HKLM "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKLM "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKLM "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegDWORD HKLM "${KEY}" "NoModify" 1
  WriteRegDWORD HKLM "${KEY}" "NoRepair" 1
SectionEnd

; Puts "same" into $0 if the workstation's settings are those that were installed.
Function un.CompareSettings
  StrCpy $0 "other"
  FileOpen $1 "$INSTDIR\arecm.cfg" r
  FileOpen $2 "$INSTDIR\arecm.default" r
  ${Do}
    ClearErrors
    FileRead $1 $3
    ${If} ${Errors}
      StrCpy $3 ""
    ${EndIf}
    ClearErrors
    FileRead $2 $4
    ${If} ${Errors}
      StrCpy $4 ""
    ${EndIf}
    ${If} $3 S!= $4
      ${ExitDo}
    ${EndIf}
    ${If} $3 == ""
      StrCpy $0 "same"
      ${ExitDo}
    ${EndIf}
  ${Loop}
  FileClose $1
  FileClose $2
FunctionEnd

Section "Uninstall"
  !insertmacro RequireAllIdle
  Call un.CompareSettings
  ${If} $0 == "same"
    Delete "$INSTDIR\arecm.cfg"
  ${EndIf}
  Delete "$INSTDIR\arecm.default"
  Delete "$INSTDIR\logbook.exe"
  Delete "$INSTDIR\logbookctl.exe"
  Delete "$INSTDIR\ecm-agent.exe"
  Delete "$INSTDIR\quorex-host.exe"
  ; What was packed into folders, file by file.
  !include "${REMOVAL}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  DeleteRegKey HKLM "${KEY}"
SectionEnd
