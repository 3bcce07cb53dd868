// The panel and its pages as a user waits for them: until nothing of them is left to paint. The host's answers, the
// message loop's pause and the panel's slide are told apart from the rest, which is what can be made faster.
#include "bench/bench_session.h"
#include "bench/benchmarks.h"
#include "bench/floors.h"
#include "bench/measure.h"
#include "kernel/base/plugin_state.h"
#include "kernel/plugin.h"
#include "panel/page_tree.h"
#include "panel/pages.h"
#include "panel/resources/resource.h"

#include <commctrl.h>

#include <stdexcept>

constexpr int ROUNDS = 7;
constexpr LONG MONITORS = 3;
constexpr DWORD ANSWER_MS = 5;

// ---- A wait and its parts -----------------------------------------------------------------------------------------

struct WAIT {
    double totalUs;
    double hostUs;  // of that the host's answers
    double floorUs; // of that the message loop's pause and the panel's slide
};

static WAIT MeasureWait(BenchHost *host, const std::function<void()> &action)
{
    const double host0 = host->Totals().answeringUs;
    const FLOORS floors0 = FloorsSoFar();
    const double start = NowUs();
    action();
    const double answering = host->Totals().answeringUs - host0;
    const FLOORS floors = FloorsSoFar();
    RedrawWindow(g_hPanelDlg, nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    return {NowUs() - start, answering, floors.pauseUs - floors0.pauseUs + floors.slideUs - floors0.slideUs};
}

static void Add(REPORT *report, const std::string &name, const std::vector<WAIT> &waits)
{
    const auto add = [&](const char *part, double (*us)(const WAIT &)) {
        std::vector<double> values;
        for (const WAIT &wait : waits)
            values.push_back(us(wait) / 1000);
        report->Add(name + part, Median(values), "ms");
    };
    add("", [](const WAIT &wait) { return wait.totalUs; });
    add(": the host's answers in it", [](const WAIT &wait) { return wait.hostUs; });
    add(": pause and slide in it", [](const WAIT &wait) { return wait.floorUs; });
    add(": the rest", [](const WAIT &wait) { return wait.totalUs - wait.hostUs - wait.floorUs; });
}

// ---- What a user does ---------------------------------------------------------------------------------------------

static void OpenPanel(BenchHost *host)
{
    int opened = 0;
    host->Run([&] { opened = PluginOpenPanel(nullptr); });
    if (opened != 1 || !g_hPanelDlg)
        throw std::runtime_error("the panel did not open");
}

static void ClosePanel()
{
    SendMessageA(g_hPanelDlg, WM_CLOSE, 0, 0);
}

static void ChooseMonitor(WPARAM monitor)
{
    const HWND hList = GetDlgItem(g_hPanelDlg, IDC_PANEL_MONITOR);
    SendMessageA(hList, CB_SETCURSEL, monitor, 0);
    SendMessageA(g_hPanelDlg, WM_COMMAND, MAKEWPARAM(IDC_PANEL_MONITOR, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(hList));
}

static void ChooseItem(TREEITEM item)
{
    SendDlgItemMessageA(g_hPanelDlg, IDC_PANEL_TREE, TVM_SELECTITEM, TVGN_CARET,
                        reinterpret_cast<LPARAM>(TreeItemHandle(item)));
}

static const struct {
    const char *name;
    TREEITEM item;
} s_Pages[] = {
    {"application page", TREE_APPLICATIONS}, {"colour page", TREE_COLOR},
    {"network page", TREE_NETWORK},          {"communication log", TREE_COMM_LOG},
    {"button lock page", TREE_BUTTON_LOCK},  {"launcher page", TREE_LAUNCHER},
    {"page of button 1", TREE_BUTTON_1},     {"page of POWER", TREE_BUTTON_6},
    {"reservation page", TREE_RESERVATION},  {"version page", TREE_VERSION},
};

static void WriteButtonLabels()
{
    std::string text;
    for (LONG monitor = 0; monitor < MONITORS; ++monitor) {
        text += "[BENCH" + std::to_string(monitor) + "]\r\n";
        for (int button = 1; button <= 6; ++button)
            text += "button" + std::to_string(button) + "=B" + std::to_string(button) + "\r\n";
    }
    IniFolder::Write("Launcher.ini", text);
}

// ---- Measuring ----------------------------------------------------------------------------------------------------

static std::vector<WAIT> MeasureOpenings(BenchHost *host)
{
    std::vector<WAIT> waits;
    for (int round = 0; round <= ROUNDS; ++round) {
        const WAIT wait = MeasureWait(host, [host] { OpenPanel(host); });
        if (round > 0) // the first opening loads what the later ones find
            waits.push_back(wait);
        ClosePanel();
    }
    return waits;
}

// Result: empty when the page did not come.
static std::vector<WAIT> MeasurePage(BenchHost *host, TREEITEM item)
{
    std::vector<WAIT> waits;
    for (int round = 0; round <= ROUNDS; ++round) {
        ChooseItem(TREE_ROOT);
        const WAIT wait = MeasureWait(host, [item] { ChooseItem(item); });
        if (!PageWindow(item))
            return {};
        if (round > 0)
            waits.push_back(wait);
    }
    return waits;
}

void BenchPanel(REPORT *report)
{
    BENCHSESSION session;
    session.host.monitors = MONITORS;
    session.host.later = true;
    session.host.delayMs = ANSWER_MS;
    WriteCapabilities(MONITORS);
    WriteButtonLabels();
    const RunningPlugin plugin(&session);
    Add(report, "panel", MeasureOpenings(&session.host));

    OpenPanel(&session.host);
    ChooseMonitor(1); // the tree has all items after a change of monitor only
    ChooseMonitor(0);
    for (const auto &page : s_Pages) {
        const std::vector<WAIT> waits = MeasurePage(&session.host, page.item);
        if (waits.empty())
            report->failure += std::string(report->failure.empty() ? "" : ", ") + "no page '" + page.name + "'";
        else
            Add(report, page.name, waits);
    }
}
