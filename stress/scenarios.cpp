// The acts: start and stop, colours, profiles, reservations, buttons, server commands, the panel.
#include "stress/scenario.h"

#include "kernel/base/plugin_state.h"
#include "kernel/host_command.h"
#include "kernel/link/host_protocol.h"
#include "launcher/launcher_settings.h"
#include "monitor/monitor_table.h"
#include "monitor/vcp.h"
#include "panel/resources/resource.h"
#include "profiles/foreground.h"
#include "server/server_state.h"
#include "settings/registry.h"
#include "stress/page_scenarios.h"
#include "stress/panel_hands.h"
#include "support/clock.h"
#include "support/front_programs.h"
#include "support/replaced_imports.h"
#include "support/text.h"
#include "timer/reservation_store.h"
#include "timer/reserve_prompt.h"

#include <algorithm>

// ---- Settings and monitors ----------------------------------------------------------------------------------------

static void PutMonitors(STAGE *stage)
{
    const auto lock = stage->run.host.Lock();
    stage->run.host.monitors = FullMonitors();
}

static void PutGeneral(const char *name, DWORD value)
{
    PutDword(HKEY_CURRENT_USER, SUBKEY_GENERAL, name, value);
}

static void PutLauncher(const char *name, DWORD value)
{
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name, value);
}

static void PrepareNew(STAGE *stage)
{
    PutMonitors(stage);
    WriteMonitorFiles();
}

// A PC that has been in use for a while.
static void PrepareUsed(STAGE *stage)
{
    PrepareNew(stage);
    PutGeneral("IiF", 1);
    PutText(HKEY_CURRENT_USER, SUBKEY_GENERAL, "LocalUserName", "user");
    PutText(HKEY_CURRENT_USER, SUBKEY_GENERAL, "LocalGroupName", "group");
    const struct {
        const char *name;
        DWORD value;
    } launcher[] = {{"InitFlag", 1},           {"MaxMonitor", 2},          {"EndFlag", 0},
                    {"dwLTimer", 2},           {"Launcher_0_Enable_1", 2}, {"PowerSwitch_0", 1},
                    {"ButtonLockStatus_0", 0}, {"ButtonLockStatus_1", 7}};
    for (const auto &value : launcher)
        PutLauncher(value.name, value.value);
    for (const char *name : {"exe_0_1", "exe_0_1_Path"})
        PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name, "editor.exe");
}

// The same after a run that did not end in order.
static void PrepareUnclean(STAGE *stage)
{
    PrepareUsed(stage);
    PutLauncher("EndFlag", 1);
}

static std::string ProgramPath()
{
    char path[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, path, sizeof path);
    return path;
}

// This program is a registered one, and in front.
static void PrepareProfile(STAGE *stage)
{
    PrepareUsed(stage);
    PutGeneral("DirectLink", 1);
    IniFolder::Write("profile.ini", "[User0]\r\nname=" + ProgramPath() +
                                        "\r\nalias=me\r\necomode=0\r\ncontrast=42\r\nbrightness=43\r\n"
                                        "ecobrightness=44\r\ncolortemp=11\r\nred=45\r\ngreen=46\r\nblue=47\r\n");
    stage->run.host.Run([stage] {
        stage->front = CreateWindowA("STATIC", "front", WS_POPUP | WS_VISIBLE, 0, 0, 50, 50, nullptr, nullptr,
                                     GetModuleHandleA(nullptr), nullptr);
    });
}

static void PrepareReservation(STAGE *stage)
{
    PrepareUsed(stage);
    IniFolder::Write("ontimer.ini", Sjis("[Timer0]\r\ndate=2006/06/10\r\ntime=20:00\r\nenddate=2006/06/10\r\n"
                                         "endtime=21:00\r\nlcd=NRV-PA1\r\ncrtno=0\r\nchannel=ビデオ\r\n"));
}

static void PrepareStarted(STAGE *stage)
{
    PrepareUsed(stage);
    IniFolder::Write("ontimer.ini", Sjis("[Timer0]\r\ndate=2006/06/10\r\ntime=開始\r\nenddate=2006/06/10\r\n"
                                         "endtime=21:00\r\nlcd=NRV-PA1\r\ncrtno=0\r\nchannel=デジタル\r\n"));
}

static void PrepareServer(STAGE *stage)
{
    PrepareUsed(stage);
    stage->server.emplace();
    const SERVERCOLORS colors = {0, 51, 52, 53, 54, 55, 56, 11, 0};
    stage->server->answer = std::string(reinterpret_cast<const char *>(&colors), sizeof colors);
}

// ---- What was done ------------------------------------------------------------------------------------------------

std::string Differs(const std::string &what, LONG is, LONG shall)
{
    return is == shall ? "" : what + " is " + std::to_string(is) + " instead of " + std::to_string(shall) + ". ";
}

std::string FeatureDiffers(STAGE *stage, size_t monitor, BYTE code, LONG shall)
{
    const auto lock = stage->run.host.Lock();
    return Differs("feature " + std::to_string(code), stage->run.host.monitors[monitor].features[code].current, shall);
}

static std::string NotRecorded(const std::string &begin)
{
    for (const std::string &call : TakeRecordedCalls())
        if (call.compare(0, begin.size(), begin) == 0)
            return "";
    return "no " + begin + ". ";
}

// ---- Start and stop -----------------------------------------------------------------------------------------------

constexpr char NOT_READ_YET = '\x01';

void LoadPlugin()
{
    ResetPluginState();
    HoldTimer(ALL_TIMERS);
    SkipPauses(true);
    HurryPauses(true);
    SetClock(2006, 6, 10, 19, 0);
    g_szGroupName[0] = NOT_READ_YET;
}

// The group's name is the last thing that the listener finds out about itself.
static void WaitForListener()
{
    constexpr DWORD TO_ITS_SOCKET_MS = 5;
    for (int round = 0; round < 1000 && PluginThreads() > 1 && g_szGroupName[0] == NOT_READ_YET; ++round)
        Sleep(TO_ITS_SOCKET_MS);
    Sleep(TO_ITS_SOCKET_MS);
}

void StartPlugin(STAGE *stage)
{
    if (!stage->run.Start())
        return;
    stage->run.StartUp();
    stage->run.Tick(TIMER_RESERVATION);
    WaitForListener();
}

// Also when nothing runs: a host would.
void StopPlugin(STAGE *stage)
{
    stage->run.Stop();
}

static std::string NotStarted(STAGE *)
{
    return Differs("started", g_bStarted, 1) + Differs("monitors", g_nMonitor, 2) +
           Differs("threads", PluginThreads(), 2) + Differs("link running", g_ServerThreadCtx.bRunning, 1);
}

static std::string NotStopped(STAGE *stage)
{
    return Differs("threads", PluginThreads(), 0) + Differs("window", g_hKernelWnd != nullptr, 0) +
           FeatureDiffers(stage, 1, VCP_BUTTON_LOCK, 0);
}

// ---- Colours ------------------------------------------------------------------------------------------------------

static void WriteColorsByHost(STAGE *stage)
{
    const HOSTCOLORS colors = {0, 0, 61, 62, 0, 0, 0, 8};
    constexpr DWORD REQUEST = 5;
    HOSTDATA *data = MakeDataBlock(PLUGIN_COMMAND_WRITE_COLORS, &colors, sizeof colors, REQUEST);
    HOSTPACKET packet = {};
    packet.src = stage->run.host.address;
    packet.dwDataSize = data->dwSize;
    packet.lpData = data;
    stage->run.host.Run([&packet] {
        const PluginCode slot;
        PluginCommand(&packet);
    });
    FreeDataBlock(data);
}

static std::string ColorsNotWritten(STAGE *stage)
{
    return FeatureDiffers(stage, 0, VCP_BRIGHTNESS, 61) + FeatureDiffers(stage, 0, VCP_CONTRAST, 62) +
           FeatureDiffers(stage, 0, VCP_COLOR_PRESET, 8);
}

static void BringToFront(STAGE *stage)
{
    PutMonitors(stage);
    MoveToFront(stage->front);
    ResetForegroundState();
}

static void CheckForeground(STAGE *stage)
{
    stage->run.Tick(TIMER_FOREGROUND);
}

static std::string ProfileNotApplied(STAGE *stage)
{
    return FeatureDiffers(stage, 0, VCP_BRIGHTNESS, 43) + FeatureDiffers(stage, 0, VCP_CONTRAST, 42) +
           FeatureDiffers(stage, 0, VCP_RED_GAIN, 45) + Differs("idle", g_bForeIdle, 1);
}

// ---- Reservations -------------------------------------------------------------------------------------------------

static void LoadTable(STAGE *stage, LONG changeMsg, int hour)
{
    PutMonitors(stage);
    g_nReservation = LoadReservations(g_Reservation, "ontimer.ini");
    CloseReservationFiles();
    nChangeMsg = changeMsg;
    SetClock(2006, 6, 10, hour, 0);
}

static void ComeToStart(STAGE *stage)
{
    LoadTable(stage, CHANGE_AT_ONCE, 20);
}

static void ComeToQuestion(STAGE *stage)
{
    LoadTable(stage, CHANGE_ASK_FIRST, 20);
}

static void ComeToEnd(STAGE *stage)
{
    LoadTable(stage, CHANGE_AT_ONCE, 21);
    const auto lock = stage->run.host.Lock();
    stage->run.host.monitors[0].features[VCP_INPUT_SOURCE].current = 5;
}

static void CheckReservationsOnce(STAGE *stage)
{
    stage->run.Tick(TIMER_RESERVATION);
}

static void AgreeToReservation(STAGE *stage)
{
    stage->run.Tick(TIMER_RESERVATION);
    if (g_hReservePrompt)
        SendMessageA(g_hReservePrompt, WM_COMMAND, IDC_PROMPT_SWITCH, 0);
}

static std::string NotSwitched(STAGE *stage)
{
    return FeatureDiffers(stage, 0, VCP_INPUT_SOURCE, 5) + Differs("open prompt", g_hReservePrompt != nullptr, 0) +
           Differs("open time", g_Reservation[0].szTime[0] != '\0', 0);
}

static std::string NotRestored(STAGE *stage)
{
    return FeatureDiffers(stage, 0, VCP_INPUT_SOURCE, 3) + Differs("reservations", g_nReservation, 0);
}

// ---- Buttons ------------------------------------------------------------------------------------------------------

static void Press(STAGE *stage, LONG bit)
{
    PutMonitors(stage);
    const auto lock = stage->run.host.Lock();
    stage->run.host.monitors[0].features[VCP_BUTTON_PRESSED] = {0, bit << 8};
}

static void PressFirst(STAGE *stage)
{
    Press(stage, ButtonBit(1));
}

static void PressPower(STAGE *stage)
{
    Press(stage, ButtonBit(LAUNCHER_BUTTON_POWER));
}

static void PollButtons(STAGE *stage)
{
    stage->run.Tick(TIMER_BUTTON_POLL);
}

static std::string NotLaunched(STAGE *stage)
{
    return NotRecorded("ShellExecute open|editor.exe") +
           FeatureDiffers(stage, 0, VCP_BUTTON_PRESSED, BUTTON_PRESSED_NONE);
}

static std::string NotShutDown(STAGE *)
{
    return NotRecorded("ExitWindowsEx");
}

// ---- Server commands ----------------------------------------------------------------------------------------------

static size_t s_Answers;

static void SendCommands(STAGE *stage)
{
    constexpr DWORD PATIENCE_MS = 10000, SHORT_PATIENCE_MS = 200, REPEAT_MS = 1500;
    constexpr int REPEATS = 3;
    TestServer &server = *stage->server;
    server.repeatAfter = stage->faulty ? SHORT_PATIENCE_MS : REPEAT_MS;
    server.patience = stage->faulty ? SHORT_PATIENCE_MS : PATIENCE_MS;
    server.mostRepeats = stage->faulty ? 0 : REPEATS;
    s_Answers = 0;
    for (const uint8_t command : {SERVER_SET_FEATURE, SERVER_SET_ALL, SERVER_VERSION, SERVER_ALLOW_NAMES})
        s_Answers += server.Ask(Datagram(command, VCP_CONTRAST, 33)).size();
    if (stage->faulty)
        server.Drain();
}

static std::string NotAnswered(STAGE *stage)
{
    return Differs("answers", static_cast<LONG>(s_Answers), 1 + 2 + 2 + 1) +
           FeatureDiffers(stage, 0, VCP_CONTRAST, 53) + FeatureDiffers(stage, 0, VCP_RED_GAIN, 54);
}

// ---- Table --------------------------------------------------------------------------------------------------------

template <TREEITEM ITEM>
static constexpr SCENARIO PageShown(const char *name)
{
    return {name, "that page shown", DURING::Act, IDOK, PrepareUsed, OpenPanelAtRoot, ShowPage<ITEM>, PageNotShown};
}

const SCENARIO g_Scenarios[] = {
    {"first-start", "a start without any settings", DURING::Start, IDOK, PrepareNew, nullptr, nullptr, NotStarted},
    {"start", "a start with settings", DURING::Start, IDOK, PrepareUsed, nullptr, nullptr, NotStarted},
    {"start-after-crash", "a start after a run that did not end in order", DURING::Start, IDOK, PrepareUnclean, nullptr,
     nullptr, NotStarted},
    {"stop", "a stop", DURING::Stop, IDOK, PrepareUsed, PutMonitors, nullptr, NotStopped},
    {"host-colors", "colours written by a command of the host", DURING::Act, IDOK, PrepareUsed, PutMonitors,
     WriteColorsByHost, ColorsNotWritten},
    {"profile", "a registered program comes to the front", DURING::Act, IDYES, PrepareProfile, BringToFront,
     CheckForeground, ProfileNotApplied},
    {"res-start", "a reservation starts", DURING::Act, IDOK, PrepareReservation, ComeToStart, CheckReservationsOnce,
     NotSwitched},
    {"res-prompt", "a reservation asks, and starts", DURING::Act, IDOK, PrepareReservation, ComeToQuestion,
     AgreeToReservation, NotSwitched},
    {"res-end", "a reservation ends", DURING::Act, IDOK, PrepareStarted, ComeToEnd, CheckReservationsOnce, NotRestored},
    {"button", "a button that starts a program", DURING::Act, IDOK, PrepareUsed, PressFirst, PollButtons, NotLaunched},
    {"power", "the POWER button shuts the PC down", DURING::Act, IDOK, PrepareUsed, PressPower, PollButtons,
     NotShutDown},
    {"server", "four commands of the management server", DURING::Act, IDOK, PrepareServer, PutMonitors, SendCommands,
     NotAnswered},
    {"panel", "the panel opened, and closed", DURING::Act, IDOK, PrepareUsed, PutMonitors, OpenAndClosePanel,
     PanelNotOpened},
    PageShown<TREE_APPLICATIONS>("show-apps"),
    PageShown<TREE_COLOR>("show-colors"),
    PageShown<TREE_NETWORK>("show-network"),
    PageShown<TREE_COMM_LOG>("show-log"),
    PageShown<TREE_BUTTON_LOCK>("show-lock"),
    PageShown<TREE_LAUNCHER>("show-launcher"),
    PageShown<TREE_BUTTON_1>("show-button-1"),
    PageShown<TREE_BUTTON_6>("show-power"),
    PageShown<TREE_RESERVATION>("show-res"),
    PageShown<TREE_VERSION>("show-version"),
    {"color-page", "colours changed on their page", DURING::Act, IDOK, PrepareUsed, OpenColorPage, ChangeColors,
     ColorsNotChanged},
    {"color-store", "a colour profile and a program registered there", DURING::Act, IDOK, PrepareUsed, OpenColorPage,
     StoreProfiles, ProfilesNotStored},
    {"lock-page", "a button locked on its page", DURING::Act, IDOK, PrepareUsed, OpenLockPage, LockButton,
     ButtonNotLocked},
    {"button-page", "a button made a launcher on its page", DURING::Act, IDOK, PrepareUsed, OpenButtonPage,
     EnableLauncher, LauncherNotEnabled},
    {"res-page", "a reservation entered on its page", DURING::Act, IDOK, PrepareUsed, OpenReservationPage,
     EnterReservation, ReservationNotEntered},
};
const size_t g_nScenarios = sizeof g_Scenarios / sizeof g_Scenarios[0];

// An unanswered question for the number of monitors makes it -1, and another number than last time resets the launcher.
#define COUNT_UNKNOWN "the host was not asked for the number of monitors, which is then -1"
#define INPUT_UNKNOWN "an input that cannot be read counts as the television"

const TOLERATED g_Tolerated[] = {
    {"first-start", "\\MaxMonitor", "4:\xFF\xFF\xFF\xFF", COUNT_UNKNOWN},
    {"start", "\\MaxMonitor", "4:\xFF\xFF\xFF\xFF", COUNT_UNKNOWN},
    {"start", "\\dwLTimer", std::string("4:\0\0\0\0", 6), COUNT_UNKNOWN},
    {"start-after-crash", "\\MaxMonitor", "4:\xFF\xFF\xFF\xFF", COUNT_UNKNOWN},
    {"res-start", "channel", Sjis("テレビ"), INPUT_UNKNOWN},
    {"res-prompt", "channel", Sjis("テレビ"), INPUT_UNKNOWN},
};
const size_t g_nTolerated = sizeof g_Tolerated / sizeof g_Tolerated[0];
