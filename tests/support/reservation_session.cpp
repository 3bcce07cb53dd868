// The page, its file, its prompt.
#include "support/reservation_session.h"

#include "monitor/enumeration.h"
#include "panel/page_table.h"
#include "panel/reservation_rows.h"
#include "panel/resources/resource.h"
#include "support/clock.h"
#include "support/panel_session.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"
#include "timer/scheduler.h"

#include <commctrl.h>

#include <algorithm>
#include <cstdio>
#include <sstream>

constexpr int COLUMNS = 6;

ReservationPage::ReservationPage()
{
    const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_DATE_CLASSES | ICC_LISTVIEW_CLASSES};
    InitCommonControlsEx(&classes);
    m_parent = CreateWindowA("STATIC", "", WS_POPUP, 0, 0, 600, 400, nullptr, nullptr, nullptr, nullptr);
    m_page = CreateDialogParamA(g_hInstance, MAKEINTRESOURCEA(IDD_RESERVATION_PAGE), m_parent, ReservationPageProc, 0);
}

ReservationPage::~ReservationPage()
{
    DestroyWindow(m_parent);
    g_hPanelDlg = nullptr;
}

void ReservationPage::BeThePanel(bool onPage)
{
    g_hPanelDlg = m_parent;
    if (!onPage)
        DestroyWindow(m_page);
}

SYSTEMTIME ParseMoment(const std::string &moment)
{
    SYSTEMTIME time = {};
    sscanf(moment.c_str(), "%4hu/%2hu/%2hu %2hu:%2hu", &time.wYear, &time.wMonth, &time.wDay, &time.wHour,
           &time.wMinute);
    return time;
}

void EnterReservation(HWND page, const std::string &start, const std::string &end, const std::string &channel)
{
    const std::string *moment = &start;
    for (const MOMENTCONTROLS &controls : g_MomentControls) {
        SYSTEMTIME time = ParseMoment(*moment);
        SendDlgItemMessageA(page, controls.nDate, DTM_SETSYSTEMTIME, GDT_VALID, reinterpret_cast<LPARAM>(&time));
        Pick(page, controls.nHour, time.wHour);
        Pick(page, controls.nMinute, time.wMinute);
        moment = &end;
    }
    const Lines offered = EntriesOf(page, IDC_RESERVATION_CHANNEL);
    Pick(page, IDC_RESERVATION_CHANNEL,
         static_cast<int>(std::find(offered.begin(), offered.end(), channel) - offered.begin()));
}

Lines ReservationRows(HWND page)
{
    return RowsOf(page, IDC_RESERVATION_LIST, COLUMNS);
}

// ---- The file -----------------------------------------------------------------------------------------------------

std::string Section(int n, const std::string &start, const std::string &end, const std::string &channel,
                    const std::string &model, int monitor)
{
    return Sjis("[Timer" + std::to_string(n) + "]\r\ndate=" + start.substr(0, 10) + "\r\ntime=" + start.substr(11) +
                "\r\nenddate=" + end.substr(0, 10) + "\r\nendtime=" + end.substr(11) + "\r\nlcd=" + model +
                "\r\ncrtno=" + std::to_string(monitor) + "\r\nchannel=" + channel + "\r\n");
}

static std::string Utf8(const std::string &sjis)
{
    wchar_t wide[256] = L"";
    char utf8[512] = "";
    MultiByteToWideChar(932, 0, sjis.c_str(), -1, wide, 256);
    WideCharToMultiByte(CP_UTF8, 0, wide, -1, utf8, sizeof utf8, nullptr, nullptr);
    return utf8;
}

Lines SectionLines(int n)
{
    Lines lines;
    std::istringstream file(IniFolder::Read("ontimer.ini"));
    const std::string header = "[Timer" + std::to_string(n) + "]";
    bool inside = false;
    for (std::string line; std::getline(file, line);) {
        if (!line.empty() && line.back() == '\r')
            line.pop_back();
        if (!line.empty() && line[0] == '[')
            inside = line == header;
        // Rewriting a section may drop the blanks in front of its values.
        const size_t value = line.find('=') + 1;
        if (value)
            line.erase(value, line.find_first_not_of(' ', value) - value);
        if (inside && !line.empty())
            lines.push_back(Utf8(line));
    }
    return lines;
}

// ---- Table and prompt ---------------------------------------------------------------------------------------------

bool IsUsed(int n)
{
    return g_Reservation[n].szSection[0] != '\0';
}

std::string PromptShown()
{
    char text[256] = "";
    GetDlgItemTextA(g_hReservePrompt, IDC_PROMPT_TEXT, text, sizeof text);
    std::string shown = text;
    for (const int button : {IDC_PROMPT_SWITCH, IDC_PROMPT_DELETE, IDC_PROMPT_OK})
        if (IsWindowVisible(GetDlgItem(g_hReservePrompt, button)))
            shown += " " + std::to_string(button);
    return shown;
}

std::string QuestionShown()
{
    return Sjis("予約開始時間になりました。\n画面を切り替えますか？ 1048 1049");
}

std::string NoticeShown()
{
    return Sjis("予約終了時間を経過したため\n対象の予約を削除しました。 1052");
}

// ---- The fixture --------------------------------------------------------------------------------------------------

ReservationTest::ReservationTest()
{
    for (const char *model : {"NRV-PA1", "NRV-PA2"})
        host.monitors.push_back(
            {model, "(vcp(60(01 03 05 07 09) E8))", {{VCP_INPUT_SOURCE, {3, 9}}, {VCP_TV_CHANNEL, {777, 999}}}, {}});
    InitMonitors();
    for (LONG monitor = 0; monitor < 2; ++monitor) {
        strcpy(g_Monitor[monitor].szInputName[0], "1");
        strcpy(g_Monitor[monitor].szInputName[1], "3");
        strcpy(g_Monitor[monitor].szInputName[2], "    ");
    }
    SkipPauses(true, [this](const std::string &pause) { host.Note(pause); });
    host.TakeLog();
}

ReservationTest::~ReservationTest()
{
    CloseReservePrompt();
    SkipPauses(false);
    CloseReservationFiles();
}

void ReservationTest::SetMinute(const std::string &moment)
{
    const SYSTEMTIME time = ParseMoment(moment);
    SetClock(time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute);
}

void ReservationTest::LoadFile(const std::string &bytes)
{
    IniFolder::Write("ontimer.ini", bytes);
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
}

int ReservationTest::Add(const std::string &start, const std::string &end, const std::string &channel)
{
    ReservationPage page;
    EnterReservation(page.Window(), start, end, channel);
    return AddReservation(page.Window());
}

Lines ReservationTest::Tick()
{
    CheckReservePrompt();
    CheckReservationEnd();
    CheckReservationStart();
    return host.TakeLog();
}

Lines ReservationTest::Press(int button)
{
    SendMessageA(g_hReservePrompt, WM_COMMAND, static_cast<WPARAM>(button), 0);
    return host.TakeLog();
}
