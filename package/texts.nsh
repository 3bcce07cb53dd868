; What the setup program says, and the names of the start menu's entries, in both languages.

!macro Text NAME ENGLISH JAPANESE
  LangString ${NAME} ${LANG_ENGLISH} "${ENGLISH}"
  LangString ${NAME} ${LANG_JAPANESE} "${JAPANESE}"
!macroend
!define Text "!insertmacro Text"

; An entry's name as texts of their own: the uninstaller removes it in either language.
!macro Link NAME ENGLISH JAPANESE
  !define ${NAME}_1033 "${ENGLISH}"
  !define ${NAME}_1041 "${JAPANESE}"
  ${Text} ${NAME} "${ENGLISH}" "${JAPANESE}"
!macroend
!define Link "!insertmacro Link"

!define LINK_PROGRAM "Trayhub"
${Link} LINK_SIMULATED "Trayhub (simulated monitors)" "Trayhub（お試し用の仮想モニタ）"
${Link} LINK_MANUAL "Lumivane 2 manual (Japanese)" "Lumivane 2 マニュアル"
${Link} LINK_UNINSTALL "Uninstall Lumivane 2" "Lumivane 2 のアンインストール"

${Text} TEXT_WELCOME \
    "Lumivane 2 sets brightness and colour of your monitors with the mouse.$\r$\n$\r$\nSetup installs version ${VERSION} for you alone; administrator rights are not needed. If an older version is installed, your settings are kept. A running Trayhub is ended.$\r$\n$\r$\nClick Next to continue." \
    "Lumivane 2 は、モニタの明るさや色をマウスで設定するプログラムです。$\r$\n$\r$\nバージョン ${VERSION} を現在のユーザー用にインストールします。管理者の権限は要りません。以前のバージョンがあるときは、設定を残して置き換えます。実行中の Trayhub は終了します。$\r$\n$\r$\n続けるには「次へ」をクリックしてください。"
${Text} TEXT_PROGRAM "Trayhub and its plug-in" "Trayhub とプラグイン"
${Text} TEXT_ABOUT_PROGRAM \
    "The program in the notification area, the plug-in that sets the monitors, and simulated monitors to try them with." \
    "通知領域のプログラム、モニタを設定するプラグイン、お試し用の仮想モニタです。"
${Text} TEXT_MENU "Start menu entries" "スタート メニューの項目"
${Text} TEXT_ABOUT_MENU "Entries for Trayhub, for Trayhub with simulated monitors, and for the uninstaller." \
    "Trayhub、仮想モニタでのお試し、アンインストールの項目です。"
${Text} TEXT_START_WITH_WINDOWS "Start with Windows" "Windows の起動時に開始する"
${Text} TEXT_ABOUT_START_WITH_WINDOWS "Trayhub starts when you sign in. Its menu can change this later." \
    "サインインすると Trayhub が起動します。あとから Trayhub のメニューでも変更できます。"
${Text} TEXT_RUN "Start Trayhub" "Trayhub を起動する"
${Text} TEXT_SHOW_MANUAL "Open the manual (Japanese)" "マニュアルを開く"
${Text} TEXT_ENDING_TRAYHUB "Ending a running Trayhub" "実行中の Trayhub を終了しています"
${Text} TEXT_STILL_RUNNING \
    "Trayhub is still running and does not end, or another program uses its plug-in. End it, then try again." \
    "Trayhub が実行中で終了しないか、ほかのプログラムがプラグインを使用しています。終了してから、やり直してください。"
${Text} TEXT_ELSEWHERE \
    "Lumivane 2 is already installed in another folder:$\r$\n$0$\r$\n$\r$\nUninstall it there first, or install into that folder." \
    "Lumivane 2 は別のフォルダーにインストールされています。$\r$\n$0$\r$\n$\r$\n先にアンインストールするか、そのフォルダーにインストールしてください。"
${Text} TEXT_REMOVE_SETTINGS \
    "Remove your settings, too?$\r$\n$\r$\nProfiles, reservations, button assignments and all other settings of Lumivane 2 would be lost." \
    "設定も削除しますか?$\r$\n$\r$\nプロファイル、タイマー予約、ボタンの割り当てなど、Lumivane 2 のすべての設定が失われます。"
