; Asks every Trayhub that runs from the program folder to end, and waits for it: its files could not be replaced.
; A Trayhub of another folder, as from the zip, is left alone.

!define PROCESS_ACCESS 0x100410 ; SYNCHRONIZE, PROCESS_QUERY_INFORMATION, PROCESS_VM_READ
!define ERROR_WAIT_OVER 258

!macro FunctionsForRunningProgram UN
  ; Goes through the host windows. Pushes 1 when every Trayhub of this folder has ended, else 0. Uses $0 to $4.
  Function ${UN}CloseRunningProgram
    StrCpy $0 0
    ${Do}
      FindWindow $0 "TrayhubHost" "" 0 $0
      ${If} $0 = 0
        Push 1
        Return
      ${EndIf}
      System::Call 'user32::GetWindowThreadProcessId(p r0, *i 0 r1)'
      System::Call 'kernel32::OpenProcess(i ${PROCESS_ACCESS}, i 0, i r1) p.r2'
      System::Call 'psapi::GetModuleFileNameExW(p r2, p 0, w .r3, i ${NSIS_MAX_STRLEN})'
      GetFullPathName $4 "$INSTDIR\trayhub.exe"
      ${If} $3 == $4
        System::Call 'user32::PostMessageW(p r0, i ${WM_CLOSE}, p 0, p 0)'
        System::Call 'kernel32::WaitForSingleObject(p r2, i $patience) i.r1'
        StrCpy $0 0 ; the window is gone, so begin anew
      ${Else}
        StrCpy $1 0
      ${EndIf}
      System::Call 'kernel32::CloseHandle(p r2)'
      ${If} $1 = ${ERROR_WAIT_OVER}
        Push 0
        Return
      ${EndIf}
    ${Loop}
  FunctionEnd

  ; Pushes 1 when a program uses the file, else 0. Expects its path on the stack. Uses $0.
  Function ${UN}IsFileInUse
    Pop $0
    ${IfNot} ${FileExists} "$0"
      Push 0
      Return
    ${EndIf}
    ClearErrors
    FileOpen $0 "$0" a
    ${If} ${Errors}
      Push 1
    ${Else}
      FileClose $0
      Push 0
    ${EndIf}
  FunctionEnd

  ; Returns when nothing of ours runs any more, or ends the setup.
  Function ${UN}EndRunningProgram
    ${Do}
      DetailPrint "$(TEXT_ENDING_TRAYHUB)"
      Call ${UN}CloseRunningProgram
      Pop $0
      ${If} $0 = 1
        ; A Trayhub without a window yet, or another program that has loaded the plug-in.
        Push "$INSTDIR\trayhub.exe"
        Call ${UN}IsFileInUse
        Pop $1
        Push "$INSTDIR\lvkernel.dll"
        Call ${UN}IsFileInUse
        Pop $0
        ${If} $0 = 0
        ${AndIf} $1 = 0
          Return
        ${EndIf}
      ${EndIf}
      MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(TEXT_STILL_RUNNING)" /SD IDCANCEL IDRETRY again
      SetErrorLevel ${EXIT_STILL_RUNNING}
      Abort "$(TEXT_STILL_RUNNING)"
      again:
    ${Loop}
  FunctionEnd
!macroend
