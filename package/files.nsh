; Which files are ours. "files.lst" in the program folder lists what the setup program has brought, a path a line; a folder
; ends with a backslash and comes after what is in it. Whatever is not listed is the user's.
;
; Data files that a user may change (*.ini) are brought below "defaults" and copied to their place when nothing is there. One
; that still is as it was brought is ours, and goes or is replaced; a changed one is a setting, and stays.

!define INSTALLED_LIST "$INSTDIR\files.lst"
!define NEW_LIST "$PLUGINSDIR\files.lst"

; Runs the lines between with each line of a list in $R1; $R0 is the list's handle. They must not jump out.
!macro ForEachLine LIST
  ClearErrors
  FileOpen $R0 "${LIST}" r
  ${IfNot} ${Errors}
    ${Do}
      ClearErrors
      FileRead $R0 $R1
      ${If} ${Errors}
        ${Break}
      ${EndIf}
      StrCpy $R1 $R1 -2 ; without its line break
!macroend
!macro EndForEachLine
    ${Loop}
    FileClose $R0
  ${EndIf}
!macroend
!define ForEachLine "!insertmacro ForEachLine"
!define EndForEachLine "!insertmacro EndForEachLine"

!macro FunctionsForFiles UN
  ; Pushes 1 when the files $R3 and $R4 are there and the same, else 0. Uses $0 to $4.
  Function ${UN}AreFilesEqual
    StrCpy $4 0
    FileOpen $0 "$R3" r
    FileOpen $1 "$R4" r
    ${If} $0 != ""
    ${AndIf} $1 != ""
      FileSeek $0 0 END $2
      FileSeek $1 0 END $3
      ${If} $2 = $3
        FileSeek $0 0
        FileSeek $1 0
        ClearErrors
        ${Do}
          FileReadByte $0 $2
          ${If} ${Errors}
            StrCpy $4 1
            ${Break}
          ${EndIf}
          FileReadByte $1 $3
        ${LoopWhile} $2 = $3
      ${EndIf}
    ${EndIf}
    FileClose $0
    FileClose $1
    Push $4
  FunctionEnd

  ; Of the list's line $R1: $R3 and $R4 become the paths of a data file as it was brought and in its place. Pushes 1 when
  ; the line is a data file's, else 0. Uses $0.
  Function ${UN}IsData
    StrCpy $0 $R1 9
    ${If} $0 == "defaults\"
      StrCpy $0 $R1 1 -1
    ${AndIf} $0 != "\"
      StrCpy $R3 "$INSTDIR\$R1"
      StrCpy $0 $R1 "" 9
      StrCpy $R4 "$INSTDIR\$0"
      Push 1
    ${Else}
      Push 0
    ${EndIf}
  FunctionEnd

  ; Removes the file or folder of the list's line $R1; a folder only when it is empty. Uses $0.
  Function ${UN}RemoveListed
    StrCpy $0 $R1 1 -1
    ${If} $0 == "\"
      RMDir "$INSTDIR\$R1"
    ${Else}
      Delete "$INSTDIR\$R1"
    ${EndIf}
  FunctionEnd

  Function ${UN}RemoveUnchangedData
    ${ForEachLine} "${INSTALLED_LIST}"
      Call ${UN}IsData
      Pop $0
      ${If} $0 = 1
        Call ${UN}AreFilesEqual
        Pop $0
        ${If} $0 = 1
          Delete "$R4"
        ${EndIf}
      ${EndIf}
    ${EndForEachLine}
  FunctionEnd
!macroend

; ---- Setup --------------------------------------------------------------------------------------------------------------

!macro FunctionsForUpgrade
  ; Pushes 1 when the new list has the line $R1, too, else 0. Uses $0 to $2.
  Function IsInNewList
    StrCpy $2 0
    ClearErrors
    FileOpen $0 "${NEW_LIST}" r
    ${Do}
      FileRead $0 $1
      ${If} ${Errors}
        ${Break}
      ${EndIf}
      StrCpy $1 $1 -2
      ${If} $1 == $R1
        StrCpy $2 1
      ${EndIf}
    ${LoopUntil} $2 = 1
    FileClose $0
    Push $2
  FunctionEnd

  ; What an older version has brought and this one no longer has.
  Function RemoveDroppedFiles
    ${ForEachLine} "${INSTALLED_LIST}"
      Call IsInNewList
      Pop $0
      ${If} $0 = 0
        Call RemoveListed
      ${EndIf}
    ${EndForEachLine}
  FunctionEnd

  Function PlaceData
    ${ForEachLine} "${NEW_LIST}"
      Call IsData
      Pop $0
      ${If} $0 = 1
        ${GetParent} "$R4" $0
        CreateDirectory "$0"
        System::Call 'kernel32::CopyFileW(w R3, w R4, i 1)' ; not over a file that is there
      ${EndIf}
    ${EndForEachLine}
  FunctionEnd
!macroend

; ---- Removal ------------------------------------------------------------------------------------------------------------

; A file that the plug-in writes, and its copy that is left when a write has not come to its end.
!macro DeleteSettings FILE
  Delete "$INSTDIR\${FILE}"
  Delete "$INSTDIR\${FILE}.lvkeep"
!macroend

!macro FunctionsForRemoval
  Function un.RemoveListedFiles
    ${ForEachLine} "${INSTALLED_LIST}"
      Call un.RemoveListed
    ${EndForEachLine}
  FunctionEnd

  ; All that plug-in, host and user keep, by name: other things may lie in the same folders.
  Function un.RemoveSettings
    ${ForEachLine} "${INSTALLED_LIST}"
      Call un.IsData
      Pop $0
      ${If} $0 = 1
        Delete "$R4"
      ${EndIf}
    ${EndForEachLine}
    !insertmacro DeleteSettings "profile.ini"
    !insertmacro DeleteSettings "ontimer.ini"
    Delete "$INSTDIR\monitors.ini"
    DeleteRegKey HKCU "SOFTWARE\Norvale DEVICE,INC.\Trayhub"
    DeleteRegKey /ifempty HKCU "SOFTWARE\Norvale DEVICE,INC."
    Delete "$LOCALAPPDATA\Lumivane 2\capabilities.txt*"
    Delete "$LOCALAPPDATA\Lumivane 2\reading *" ; marks a read that has not come to its end
    RMDir "$LOCALAPPDATA\Lumivane 2"
  FunctionEnd
!macroend
