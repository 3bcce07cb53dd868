// The panel opened, every page shown, and closed, until a leak of a single object a time could not be missed.
#include "kernel/base/plugin_state.h"
#include "stress/panel_hands.h"
#include "stress/parts.h"
#include "stress/scenario.h"
#include "support/faults.h"
#include "support/replaced_imports.h"

constexpr int ROUNDS = 200;
constexpr int ROUNDS_BRIEF = 5;
constexpr int WARM_UPS = 5;

// Every fourth panel is closed with a page open, the others with none. Result: pages seen.
static int ShowPages(STAGE *stage, int round)
{
    if (!Expect(OpenPanel(&stage->run.host), "the panel does not open"))
        return 0;
    ChooseMonitor(1); // with which the launcher's pages come
    const int pages = ChooseAllItems();
    Expect(pages == PAGES_WITH_LAUNCHER, std::to_string(pages) + " pages were shown");
    if (round % 4 != 0)
        ChooseMonitor(0);
    ClosePanel();
    Expect(g_hPanelDlg == nullptr, "the panel does not close");
    TakeRecordedCalls();
    return pages;
}

void RunPanel(const WORKOPTIONS &options)
{
    AimAtPlugin(true);
    STAGE stage;
    LoadPlugin();
    stage.run.host.recording = false;
    stage.run.host.monitors = FullMonitors();
    WriteMonitorFiles();
    IniFolder::Write("ontimer.ini", "");
    StartPlugin(&stage);
    Step("warm-up");
    for (int round = 0; round < WARM_UPS; ++round)
        ShowPages(&stage, round);
    CloseReservationFiles();
    const RESOURCECOUNTS before = CountResources();
    const int rounds = options.brief ? ROUNDS_BRIEF : ROUNDS;
    int pages = 0, descriptors = 0;
    for (int round = 0; round < rounds; ++round) {
        Step("panel " + std::to_string(round));
        pages += ShowPages(&stage, round);
        descriptors += CloseReservationFiles();
    }
    Step("end");
    ExpectNoGrowth(before);
    // One a creation of the reservation page: it keeps the file from being deleted.
    Expect(descriptors == rounds, std::to_string(descriptors) + " descriptors of ontimer.ini were left open");
    StopPlugin(&stage);
    Figure(std::to_string(rounds) + " panels, " + std::to_string(pages) + " pages");
}
