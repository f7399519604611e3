; One entry of the search path PATH in the registry, put in and taken out again.
;
; The value may be as long as Windows lets it be (32,767 characters), far longer than a string here (1,023). So it
; never becomes one: it stays in memory got from the system, and is read, searched and written by the system's own
; functions. Whatever cannot be done leaves the value as it is.
;
; The caller sets $searchPathRoot (the root key's handle) and $searchPathKey.

Var searchPathRoot
Var searchPathKey
Var pathKey      ; handle of the open registry key, 0 for none
Var pathText     ; address of the value, zero-terminated, with room for one more entry; 0 for none
Var pathKind     ; its registry type
Var entry        ; the entry looked for
Var entryAddress ; where it was found, 0 for nowhere
Var entryEnd     ; the first character behind it

!define ROOT_USER -2147483647    ; HKEY_CURRENT_USER
!define ROOT_MACHINE -2147483646 ; HKEY_LOCAL_MACHINE
!define ERROR_FILE_NOT_FOUND 2
!define REG_SZ 1
!define REG_EXPAND_SZ 2
!define SEMICOLON 59
!define ENTRY_ROOM 2052       ; bytes: an entry, a semicolon, the terminator
!define SEARCH_PATH_LIMIT 32766 ; characters

!macro searchPathFunctions un

; Reads the value into $pathText. An absent one counts as empty. On failure the error flag, and $pathText is 0.
Function ${un}openSearchPath
  StrCpy $pathText 0
  System::Call 'advapi32::RegOpenKeyExW(p $searchPathRoot, w "$searchPathKey", i 0, i 3, *p .s) i .r0'
  Pop $pathKey ; KEY_QUERY_VALUE | KEY_SET_VALUE
  ${If} $0 <> 0
    StrCpy $pathKey 0
    SetErrors
    Return
  ${EndIf}
  System::Call 'advapi32::RegQueryValueExW(p $pathKey, w "Path", p 0, *i .s, p 0, *i .r1) i .r0'
  Pop $pathKind
  ${If} $0 = ${ERROR_FILE_NOT_FOUND}
    StrCpy $pathKind ${REG_EXPAND_SZ}
    StrCpy $1 0
  ${ElseIf} $0 <> 0
    SetErrors
    Return
  ${EndIf}
  ${If} $pathKind <> ${REG_SZ}
  ${AndIf} $pathKind <> ${REG_EXPAND_SZ}
    SetErrors
    Return
  ${EndIf}
  IntOp $2 $1 + ${ENTRY_ROOM}
  System::Alloc $2 ; zeros, so the text ends even if the value's does not
  Pop $pathText
  ${If} $1 > 0
    System::Call 'advapi32::RegQueryValueExW(p $pathKey, w "Path", p 0, p 0, p $pathText, *i r1) i .r0'
    ${If} $0 <> 0
      SetErrors
    ${EndIf}
  ${EndIf}
FunctionEnd

Function ${un}closeSearchPath
  ${If} $pathText P<> 0
    System::Free $pathText
  ${EndIf}
  ${If} $pathKey P<> 0
    System::Call 'advapi32::RegCloseKey(p $pathKey)'
  ${EndIf}
FunctionEnd

; Looks for $entry as a whole entry, in upper or lower case: $entryAddress, $entryEnd.
Function ${un}findEntry
  StrLen $3 $entry
  IntOp $3 $3 * 2
  StrCpy $entryAddress $pathText
  ${Do}
    System::Call 'shlwapi::StrStrIW(p $entryAddress, w "$entry") p .s'
    Pop $entryAddress
    ${If} $entryAddress P= 0
      Return
    ${EndIf}
    IntPtrOp $entryEnd $entryAddress + $3
    StrCpy $1 ${SEMICOLON} ; the character before
    ${If} $entryAddress P<> $pathText
      IntPtrOp $0 $entryAddress - 2
      System::Call '*$0(&i2 .r1)'
    ${EndIf}
    System::Call '*$entryEnd(&i2 .r2)' ; the character behind
    ${If} $1 = ${SEMICOLON}
      ${If} $2 = 0
      ${OrIf} $2 = ${SEMICOLON}
        Return
      ${EndIf}
    ${EndIf}
    IntPtrOp $entryAddress $entryAddress + 2
  ${Loop}
FunctionEnd

; Writes $pathText back, and tells running programs. An empty value is deleted. On failure the error flag.
Function ${un}storeSearchPath
  System::Call 'kernel32::lstrlenW(p $pathText) i .r1'
  ${If} $1 = 0
    System::Call 'advapi32::RegDeleteValueW(p $pathKey, w "Path") i .r0'
  ${Else}
    IntOp $1 $1 + 1
    IntOp $1 $1 * 2
    System::Call 'advapi32::RegSetValueExW(p $pathKey, w "Path", i 0, i $pathKind, p $pathText, i r1) i .r0'
  ${EndIf}
  ${If} $0 <> 0
    SetErrors
    Return
  ${EndIf}
  SendMessage ${HWND_BROADCAST} ${WM_SETTINGCHANGE} 0 "STR:Environment" /TIMEOUT=2000
FunctionEnd

!macroend

; Puts $entry at the end. $0: 1 when it was put there, 0 when it was there already. On failure the error flag.
Function addToSearchPath
  ClearErrors
  System::Call 'shlwapi::StrChrW(w "$entry", i ${SEMICOLON}) p .r0'
  ${If} $0 P<> 0 ; would be two entries
    SetErrors
    Return
  ${EndIf}
  Call openSearchPath
  ${If} ${Errors}
    Call closeSearchPath
    SetErrors
    Return
  ${EndIf}
  Call findEntry
  StrCpy $5 0
  ${If} $entryAddress P= 0
    StrCpy $5 1
    Call appendEntry
  ${EndIf}
  Call closeSearchPath
  StrCpy $0 $5
FunctionEnd

; A path that ends with a semicolon gets one behind the entry, so that taking it out gives the old value.
Function appendEntry
  System::Call 'kernel32::lstrlenW(p $pathText) i .r1'
  StrLen $2 $entry
  IntOp $2 $1 + $2
  ${If} $2 >= ${SEARCH_PATH_LIMIT}
    SetErrors
    Return
  ${EndIf}
  StrCpy $3 $entry
  ${If} $1 > 0
    IntOp $1 $1 * 2
    IntPtrOp $0 $pathText + $1
    IntPtrOp $0 $0 - 2
    System::Call '*$0(&i2 .r2)'
    ${If} $2 = ${SEMICOLON}
      StrCpy $3 "$entry;"
    ${Else}
      StrCpy $3 ";$entry"
    ${EndIf}
  ${EndIf}
  System::Call 'kernel32::lstrcatW(p $pathText, w r3)'
  Call storeSearchPath
FunctionEnd

; Takes $entry out, with the semicolon that was put there. On failure the error flag.
Function un.removeFromSearchPath
  ClearErrors
  Call un.openSearchPath
  ${IfNot} ${Errors}
    Call un.findEntry
    ${If} $entryAddress P<> 0
      Call un.cutEntry
    ${EndIf}
  ${EndIf}
  Call un.closeSearchPath
FunctionEnd

Function un.cutEntry
  System::Call '*$entryEnd(&i2 .r2)'
  ${If} $2 = ${SEMICOLON}
    IntPtrOp $entryEnd $entryEnd + 2
  ${ElseIf} $entryAddress P<> $pathText
    IntPtrOp $entryAddress $entryAddress - 2
  ${EndIf}
  System::Call 'kernel32::lstrlenW(p $entryEnd) i .r1'
  IntOp $1 $1 + 1
  IntOp $1 $1 * 2
  System::Call 'kernel32::RtlMoveMemory(p $entryAddress, p $entryEnd, p r1)'
  Call un.storeSearchPath
FunctionEnd
