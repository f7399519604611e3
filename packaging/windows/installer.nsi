; The installer for Windows x64, by makensis. scripts/package defines:
;   VERSION          of the library
;   FILES            the folder whose contents are installed
;   REMOVAL          a script of the instructions that take exactly these files away
;   OUTPUT           the installer
;
;   tallowmere-VERSION-windows-x64-setup.exe [/S] [/ALLUSERS] [/D=FOLDER]
;     /S         asks nothing and shows nothing; the exit code is 0, or 2 when nothing was changed
;     /ALLUSERS  for all users of the machine; must be started as administrator
;     /D=FOLDER  where to; the last argument, without quotes
;
; For one user by default: the shared data, the settings and the search path's entry are the user's, and nobody
; needs to be asked for an administrator's password on the boat. The user's data folder and settings are the
; library's, not the installer's: they are neither made nor taken away here.
Unicode true
Target amd64-unicode
ManifestDPIAware true
SetCompressor /SOLID lzma
RequestExecutionLevel user
Name "Tallowmere ${VERSION}"
OutFile "${OUTPUT}"
BrandingText " "
ShowInstDetails show
ShowUninstDetails show
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "Tallowmere"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileDescription "Tallowmere installer"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey LegalCopyright ""

!include LogicLib.nsh
!include FileFunc.nsh
!include MUI2.nsh
!include WinMessages.nsh
!include search_path.nsh
!insertmacro searchPathFunctions ""
!insertmacro searchPathFunctions "un."

; Where programs are listed to be uninstalled; also says where the SDK lies.
!define PROGRAMS "Software\Microsoft\Windows\CurrentVersion\Uninstall"
!define LISTED "${PROGRAMS}\Tallowmere"
; Where find_package(tallowmere) looks.
!define CMAKE_PACKAGES "Software\Kitware\CMake\Packages"
!define CMAKE_ENTRY "installed"
!define NOTHING_CHANGED 2

!define MUI_ABORTWARNING
!define MUI_FINISHPAGE_TEXT "Command prompts opened from now on find the program: tallowmere --help"
!insertmacro MUI_PAGE_WELCOME
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"

!macro stop text
  MessageBox MB_OK|MB_ICONSTOP "${text}" /SD IDOK
  SetErrorLevel ${NOTHING_CHANGED}
  Quit
!macroend

!macro useScope all
  SetRegView 64
  !if ${all} = 1
    SetShellVarContext all
    StrCpy $searchPathRoot ${ROOT_MACHINE}
    StrCpy $searchPathKey "SYSTEM\CurrentControlSet\Control\Session Manager\Environment"
  !else
    SetShellVarContext current
    StrCpy $searchPathRoot ${ROOT_USER}
    StrCpy $searchPathKey "Environment"
  !endif
!macroend

Function .onInit
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/ALLUSERS" $1
  ${If} ${Errors}
    !insertmacro useScope 0
    StrCpy $2 "$LOCALAPPDATA\Programs\Tallowmere"
  ${Else}
    UserInfo::GetAccountType
    Pop $1
    ${If} $1 != "Admin"
      !insertmacro stop "/ALLUSERS needs to be started as administrator."
    ${EndIf}
    !insertmacro useScope 1
    StrCpy $2 "$PROGRAMFILES64\Tallowmere"
  ${EndIf}
  ${If} $INSTDIR == ""
    StrCpy $INSTDIR $2
  ${EndIf}
FunctionEnd

Section
  Call removeInstalled
  SetOutPath $INSTDIR
  WriteUninstaller "$INSTDIR\uninstall.exe"
  Call enlist
  File /r "${FILES}/*.*"
  WriteRegStr SHCTX "${CMAKE_PACKAGES}\tallowmere" "${CMAKE_ENTRY}" "$INSTDIR\lib\cmake\tallowmere"
  Call enterSearchPath
SectionEnd

; An installed version goes first, wherever it lies: its files may be others than this one's.
Function removeInstalled
  ReadRegStr $1 SHCTX "${LISTED}" InstallLocation
  ${If} $1 == ""
  ${OrIfNot} ${FileExists} "$1\uninstall.exe"
    Return
  ${EndIf}
  ExecWait '"$1\uninstall.exe" /S _?=$1' $2
  ${If} $2 <> 0
    !insertmacro stop "The installed version in $1 could not be removed. Close the programs that use it and try again."
  ${EndIf}
  Delete "$1\uninstall.exe"
  RMDir "$1"
FunctionEnd

Function enlist
  WriteRegStr SHCTX "${LISTED}" DisplayName "Tallowmere"
  WriteRegStr SHCTX "${LISTED}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${LISTED}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${LISTED}" UninstallString '"$INSTDIR\uninstall.exe"'
  WriteRegStr SHCTX "${LISTED}" QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD SHCTX "${LISTED}" NoModify 1
  WriteRegDWORD SHCTX "${LISTED}" NoRepair 1
FunctionEnd

; Whether the entry is this installation's to take away stands in the list of programs.
Function enterSearchPath
  StrCpy $entry "$INSTDIR\bin"
  Call addToSearchPath
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONEXCLAMATION "PATH could not take $entry; it is as it was." /SD IDOK
  ${ElseIf} $0 = 1
    WriteRegDWORD SHCTX "${LISTED}" InPath 1
  ${EndIf}
FunctionEnd

Function un.onInit
  !insertmacro useScope 1
  ReadRegStr $0 SHCTX "${LISTED}" InstallLocation
  ${If} $0 != $INSTDIR
    !insertmacro useScope 0
  ${EndIf}
FunctionEnd

; Stops before anything is taken away when FILE is loaded by a program, or may not be written.
!macro mustBeFree file
  ${If} ${FileExists} "$INSTDIR\${file}"
    ClearErrors
    FileOpen $0 "$INSTDIR\${file}" a
    ${If} ${Errors}
      !insertmacro stop "$INSTDIR\${file} is in use, or needs an administrator. Nothing was removed."
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

Section Uninstall
  !insertmacro mustBeFree bin\tallowmere.dll
  !insertmacro mustBeFree bin\tallowmere_view.dll
  !insertmacro mustBeFree bin\tallowmere.exe
  ReadRegDWORD $0 SHCTX "${LISTED}" InPath
  ${If} $0 = 1
    StrCpy $entry "$INSTDIR\bin"
    Call un.removeFromSearchPath
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$entry could not be taken out of PATH." /SD IDOK
    ${EndIf}
  ${EndIf}
  ReadRegStr $0 SHCTX "${CMAKE_PACKAGES}\tallowmere" "${CMAKE_ENTRY}"
  ${If} $0 == "$INSTDIR\lib\cmake\tallowmere"
    DeleteRegValue SHCTX "${CMAKE_PACKAGES}\tallowmere" "${CMAKE_ENTRY}"
  ${EndIf}
  DeleteRegKey /ifempty SHCTX "${CMAKE_PACKAGES}\tallowmere"
  DeleteRegKey /ifempty SHCTX "${CMAKE_PACKAGES}"
  DeleteRegKey /ifempty SHCTX "Software\Kitware\CMake"
  DeleteRegKey /ifempty SHCTX "Software\Kitware"
  ReadRegStr $0 SHCTX "${LISTED}" InstallLocation
  ${If} $0 == $INSTDIR
    DeleteRegKey SHCTX "${LISTED}"
  ${EndIf}
  !include "${REMOVAL}"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  ${If} $searchPathRoot = ${ROOT_USER} ; what a user has no more of when this was the only program
    DeleteRegKey /ifempty SHCTX "${PROGRAMS}"
    RMDir "$LOCALAPPDATA\Programs"
  ${EndIf}
SectionEnd
