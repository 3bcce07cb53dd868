// The monitor backend that drives the monitors which Windows has.
#include "host/windows_monitors/windows_monitors.h"

#include <algorithm>
#include <cstring>

#include "host/base/capability_text.h"
#include "host/base/program_path.h"
#include "host/base/text.h"
#include "host/windows_monitors/monitor_places.h"
#include "host/windows_monitors/plain_capabilities.h"

static const char OUR_MAKER[] = "NRV"; // in the EDIDs of the monitors that the plug-in is made for

struct WINDOWSMONITORS {
    WINDOWSMONITOROPTIONS options;
    bool hasApi;
    std::string apiTrouble;
    MONITORAPI api;
    std::shared_ptr<CAPABILITYSTORE> store;

    std::mutex mutex; // guards all that follows
    OVERRIDEFILE overrides;
    DWORD findingError;
    std::string findingTrouble;
    std::vector<std::shared_ptr<MONITORSEARCH>> searches; // those that took too long
    std::shared_ptr<WORKSHOP> workshop;
    std::vector<WINDOWSMONITOR> monitors;
    bool isResting;
    bool hasStuckThread; // of this or an earlier set of monitors
};

WINDOWSMONITOROPTIONS DefaultWindowsMonitorOptions()
{
    return {ProgramFolder() + "\\monitors.ini", DefaultStoreFolder(), false, nullptr, nullptr};
}

WINDOWSMONITORS *OpenWindowsMonitors(const WINDOWSMONITOROPTIONS &options)
{
    WINDOWSMONITORS *monitors = new WINDOWSMONITORS{};
    monitors->options = options;
    if (!monitors->options.listDisplays)
        monitors->options.listDisplays = ListDisplays;
    monitors->hasApi = options.api || LoadMonitorApi(&monitors->api, &monitors->apiTrouble);
    if (options.api)
        monitors->api = *options.api;
    monitors->store = std::make_shared<CAPABILITYSTORE>();
    monitors->store->folder = options.storeFolder;
    monitors->overrides = ReadOverrides(options.overrides);
    if (options.fresh)
        ForgetCapabilities(monitors->store.get());
    return monitors;
}

// ---- Finding --------------------------------------------------------------------------------------------------------

// Opens the monitor of an identity. It needs nothing but its arguments, since the monitors may be closed meanwhile.
static bool ReopenMonitor(const MONITORAPI &api, LISTDISPLAYS listDisplays, const std::string &identity, HANDLE *handle)
{
    bool done = false;
    for (const FOUNDMONITOR &found : FindPhysicalMonitors(api, listDisplays()).monitors) {
        if (!done && found.identity == identity) {
            *handle = found.handle;
            done = true;
        } else {
            api.destroy(found.handle);
        }
    }
    return done;
}

static std::shared_ptr<WORKSHOP> MakeWorkshop(const WINDOWSMONITORS *monitors)
{
    auto workshop = std::make_shared<WORKSHOP>();
    workshop->api = monitors->api;
    workshop->store = monitors->store;
    workshop->reopen = [api = monitors->api, list = monitors->options.listDisplays](const std::string &identity,
                                                                                    HANDLE *handle) {
        return ReopenMonitor(api, list, identity, handle);
    };
    return workshop;
}

static MONITORTITLES TitlesOf(const FOUNDMONITOR &found)
{
    MONITORTITLES titles;
    if (!found.hasEdid) {
        titles.models = {found.description};
        return titles;
    }
    const EDIDFACTS facts = ReadEdidFacts(found.edid);
    titles.product = EdidProduct(found.edid);
    if (facts.serial)
        titles.serials.push_back(Format("%u", facts.serial));
    if (!EdidSerialText(found.edid).empty())
        titles.serials.push_back(EdidSerialText(found.edid));
    if (!facts.name.empty())
        titles.models = {facts.name};
    return titles;
}

// A name for files of a monitor whose EDID is not known: no other monitor that is there has it.
static std::string KeyOfIdentity(const std::string &identity)
{
    unsigned hash = 0x811C9DC5;
    for (const char c : identity)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x01000193;
    return Format("without-edid-%08X", hash);
}

// What of a monitor the rules for its writes go by.
static void InstructWorker(const WINDOWSMONITOR &monitor)
{
    MONITORWORKER *worker = monitor.worker.get();
    const bool isOurs = monitor.found.hasEdid && ReadEdidFacts(monitor.found.edid).maker == OUR_MAKER;
    std::lock_guard lock(worker->workshop->mutex);
    const std::string &own = monitor.override.capabilities;
    worker->known.takesMakersCodes = isOurs || monitor.override.takesMakersCodes;
    worker->known.ownersMaxima = monitor.override.maxima;
    worker->manners = MannersFor(monitor.override);
    worker->known.listed = CapabilityCodes(own.empty() ? worker->capabilities : own);
}

static WINDOWSMONITOR StartMonitor(const WINDOWSMONITORS *monitors, const std::shared_ptr<WORKSHOP> &workshop,
                                   const FOUNDMONITOR &found, bool isThere)
{
    WINDOWSMONITOR monitor = {found, {}, TitlesOf(found), nullptr, false};
    monitor.override = OverrideFor(monitors->overrides, monitor.titles);
    const std::string key = found.hasEdid ? EdidKey(found.edid) : KeyOfIdentity(found.identity);
    monitor.worker = StartMonitorWorker(workshop, {found.handle, found.identity, key, found.hasEdid,
                                                   monitor.override.capabilities.empty(),
                                                   monitors->options.keptCapabilitiesOnly, !isThere});
    InstructWorker(monitor);
    return monitor;
}

// Ends the threads of the present monitors, and returns what was known of them.
static std::vector<FOUNDMONITOR> EndMonitors(WINDOWSMONITORS *monitors)
{
    std::shared_ptr<WORKSHOP> workshop;
    std::vector<FOUNDMONITOR> former;
    {
        std::lock_guard lock(monitors->mutex);
        workshop = monitors->workshop;
        monitors->workshop = nullptr;
        for (const WINDOWSMONITOR &monitor : monitors->monitors)
            former.push_back(monitor.found);
        monitors->monitors.clear();
    }
    if (workshop && !CloseWorkshop(workshop.get()))
        monitors->hasStuckThread = true;
    return former;
}

// A driver that has not come back from one search is not asked a second time meanwhile.
static bool IsAnySearchStuck(WINDOWSMONITORS *monitors)
{
    std::lock_guard lock(monitors->mutex);
    return std::any_of(monitors->searches.begin(), monitors->searches.end(),
                       [](const auto &search) { return IsSearching(search.get()); });
}

static FINDING Search(WINDOWSMONITORS *monitors)
{
    if (!monitors->hasApi)
        return {};
    if (IsAnySearchStuck(monitors))
        return {{}, OUR_ERROR_STUCK, AccessErrorText(OUR_ERROR_STUCK)};
    std::shared_ptr<MONITORSEARCH> search;
    FINDING finding = SearchMonitors(monitors->api, monitors->options.listDisplays, SEARCH_PATIENCE, &search);
    std::lock_guard lock(monitors->mutex);
    if (finding.error == OUR_ERROR_STUCK)
        monitors->searches.push_back(search);
    return finding;
}

void FindWindowsMonitors(WINDOWSMONITORS *monitors, bool keepsPlaces)
{
    std::vector<FOUNDMONITOR> former = EndMonitors(monitors);
    if (!keepsPlaces)
        former.clear();
    const FINDING finding = Search(monitors);
    const OVERRIDEFILE overrides = ReadOverrides(monitors->options.overrides);
    std::lock_guard lock(monitors->mutex);
    monitors->overrides = overrides;
    monitors->findingError = finding.error;
    monitors->findingTrouble = finding.trouble;
    monitors->workshop = MakeWorkshop(monitors);
    monitors->workshop->resting = monitors->isResting;
    for (const MONITORPLACE &place : ArrangeMonitors(former, finding.monitors))
        monitors->monitors.push_back(StartMonitor(
            monitors, monitors->workshop, (place.isThere ? finding.monitors : former)[place.index], place.isThere));
}

// A capability string that has come meanwhile names its monitor, too.
static void LearnModel(const WINDOWSMONITORS *monitors, WINDOWSMONITOR *monitor)
{
    if (monitor->knowsModel)
        return;
    std::string capabilities;
    {
        std::lock_guard lock(monitor->worker->workshop->mutex);
        capabilities = monitor->worker->capabilities;
    }
    const std::string model = CapabilityModel(capabilities);
    monitor->knowsModel = !capabilities.empty();
    const std::vector<std::string> &models = monitor->titles.models;
    if (!model.empty() && std::find(models.begin(), models.end(), model) == models.end()) {
        monitor->titles.models.push_back(model);
        monitor->override = OverrideFor(monitors->overrides, monitor->titles);
    }
    InstructWorker(*monitor);
}

std::vector<WINDOWSMONITOR> CopyWindowsMonitors(WINDOWSMONITORS *monitors)
{
    std::lock_guard lock(monitors->mutex);
    for (WINDOWSMONITOR &monitor : monitors->monitors)
        LearnModel(monitors, &monitor);
    return monitors->monitors;
}

std::vector<MONITORIDENTITY> FoundWindowsMonitors(WINDOWSMONITORS *monitors)
{
    std::vector<MONITORIDENTITY> identities;
    for (const WINDOWSMONITOR &monitor : CopyWindowsMonitors(monitors))
        identities.push_back({monitor.found.identity, monitor.found.isVague});
    return identities;
}

// Has the monitors' threads know who is there. A display that gave no monitors says nothing about those behind it.
static void TellWorkers(WINDOWSMONITORS *monitors, const FINDING &finding)
{
    for (const WINDOWSMONITOR &monitor : CopyWindowsMonitors(monitors)) {
        const bool isThere =
            std::any_of(finding.monitors.begin(), finding.monitors.end(),
                        [&](const FOUNDMONITOR &found) { return found.identity == monitor.found.identity; });
        if (isThere || !finding.error)
            TellMonitorWorker(monitor.worker.get(), isThere);
    }
}

std::vector<MONITORIDENTITY> LookForWindowsMonitors(WINDOWSMONITORS *monitors)
{
    const FINDING finding = Search(monitors);
    if (finding.error == OUR_ERROR_STUCK)
        return FoundWindowsMonitors(monitors);
    TellWorkers(monitors, finding);
    std::vector<MONITORIDENTITY> identities;
    for (const FOUNDMONITOR &found : finding.monitors)
        identities.push_back({found.identity, found.isVague});
    DestroyFoundMonitors(monitors->api, finding.monitors);
    return identities;
}

// ---- Trouble --------------------------------------------------------------------------------------------------------

std::string FindingTrouble(WINDOWSMONITORS *monitors)
{
    std::lock_guard lock(monitors->mutex);
    return monitors->hasApi ? monitors->findingTrouble : monitors->apiTrouble;
}

std::vector<INIFAULT> OverrideFaults(WINDOWSMONITORS *monitors)
{
    std::lock_guard lock(monitors->mutex);
    return monitors->overrides.faults;
}

static bool IsSkipped(const WINDOWSMONITOR &monitor)
{
    std::lock_guard lock(monitor.worker->workshop->mutex);
    return monitor.worker->capabilitiesError == OUR_ERROR_SKIPPED;
}

static std::string JoinLines(const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += (text.empty() ? "" : "\n") + line;
    return text;
}

std::string WindowsMonitorsTroubleInEnglish(WINDOWSMONITORS *monitors)
{
    const std::vector<WINDOWSMONITOR> found = CopyWindowsMonitors(monitors);
    const std::string reason = FindingTrouble(monitors);
    std::vector<std::string> lines;
    if (!monitors->hasApi)
        lines.push_back("this Windows has nothing to drive monitors with: " + reason);
    else if (found.empty())
        lines.push_back("no monitor was found: " + (reason.empty() ? "Windows has no display" : reason));
    for (const INIFAULT &fault : OverrideFaults(monitors))
        lines.push_back(fault.line ? Format("monitors.ini:%d: ", fault.line) + fault.reason + "; the line is left out"
                                   : "monitors.ini cannot be read: " + fault.reason);
    for (const WINDOWSMONITOR &monitor : found)
        if (IsSkipped(monitor))
            lines.push_back(MonitorModel("", monitor.found) +
                            ": the capability string is not read, since the program " +
                            "ended in the middle of reading it; --fresh reads it again");
    return JoinLines(lines);
}

static std::string NoMonitorInJapanese(DWORD error)
{
    if (error == GRAPHICS_CONSOLE_SESSION_ONLY)
        return "リモート接続では、モニタを制御できません。";
    if (error == OUR_ERROR_STUCK)
        return "グラフィックスドライバが応答しないため、モニタを検出できません。";
    return "制御できるモニタが見つかりません。" + (error ? Format("(エラー 0x%08lX)", error) : std::string());
}

std::string WindowsMonitorsTrouble(WINDOWSMONITORS *monitors)
{
    const std::vector<WINDOWSMONITOR> found = CopyWindowsMonitors(monitors);
    std::vector<std::string> lines;
    DWORD error = 0;
    {
        std::lock_guard lock(monitors->mutex);
        error = monitors->findingError;
    }
    if (!monitors->hasApi)
        lines.push_back("この Windows には、モニタを制御する機能 (dxva2.dll) がありません。");
    else if (found.empty())
        lines.push_back(NoMonitorInJapanese(error));
    for (const INIFAULT &fault : OverrideFaults(monitors))
        lines.push_back(fault.line ? Format("monitors.ini の %d 行目に誤りがあるため、この行を無視します。", fault.line)
                                   : "monitors.ini を読み込めません。");
    for (const WINDOWSMONITOR &monitor : found)
        if (IsSkipped(monitor))
            lines.push_back(MonitorModel("", monitor.found) +
                            ": 機能情報の読み取り中にプログラムが終了したことがあるため、読み取りを省略しました。");
    return JoinLines(lines);
}

// ---- The end --------------------------------------------------------------------------------------------------------

void RestWindowsMonitors(WINDOWSMONITORS *monitors, bool rests)
{
    std::lock_guard lock(monitors->mutex);
    monitors->isResting = rests;
    if (monitors->workshop)
        RestWorkshop(monitors->workshop.get(), rests);
}

void StopWindowsMonitorAccesses(WINDOWSMONITORS *monitors)
{
    std::lock_guard lock(monitors->mutex);
    if (monitors->workshop)
        StopWorkshop(monitors->workshop.get());
}

bool CloseWindowsMonitors(WINDOWSMONITORS *monitors)
{
    EndMonitors(monitors);
    const bool allEnded = !monitors->hasStuckThread && !IsAnySearchStuck(monitors);
    if (allEnded) // a thread that comes back from the driver in the middle of a job still uses them
        delete monitors;
    return allEnded;
}

// ---- The backend ----------------------------------------------------------------------------------------------------

static bool MonitorAt(WINDOWSMONITORS *monitors, int index, WINDOWSMONITOR *monitor)
{
    std::lock_guard lock(monitors->mutex);
    if (index < 0 || index >= static_cast<int>(monitors->monitors.size()))
        return false;
    WINDOWSMONITOR *found = &monitors->monitors[static_cast<size_t>(index)];
    LearnModel(monitors, found);
    *monitor = *found;
    return true;
}

static WINDOWSMONITORS *From(void *context)
{
    return static_cast<WINDOWSMONITORS *>(context);
}

static int Count(void *context)
{
    std::lock_guard lock(From(context)->mutex);
    return static_cast<int>(From(context)->monitors.size());
}

DWORD WindowsMonitorCapabilities(WINDOWSMONITORS *monitors, int index, DWORD patience, WINDOWSMONITOR *monitor,
                                 std::string *text)
{
    if (!MonitorAt(monitors, index, monitor))
        return ERROR_NOT_FOUND;
    DWORD error = 0;
    if (monitor->override.capabilities.empty()) {
        error = AskMonitorCapabilities(monitor->worker.get(), patience, text);
        if (!MonitorAt(monitors, index, monitor)) // once more, with what the string has told
            return ERROR_NOT_FOUND;
    }
    if (monitor->override.capabilities.empty())
        return error;
    *text = monitor->override.capabilities;
    return 0;
}

// A monitor whose string cannot be had still has a name.
static MONITORRESULT Name(void *context, int index, DWORD patience, char text[HOST_NAME_SIZE])
{
    WINDOWSMONITOR monitor;
    std::string capabilities;
    if (!MonitorAt(From(context), index, &monitor))
        return MONITOR_FAILED;
    std::string name = monitor.override.model;
    if (name.empty()) {
        WindowsMonitorCapabilities(From(context), index, patience, &monitor, &capabilities);
        name = monitor.override.model.empty() ? MonitorModel(capabilities, monitor.found) : monitor.override.model;
    }
    memset(text, 0, HOST_NAME_SIZE);
    memcpy(text, name.data(), std::min<size_t>(name.size(), HOST_NAME_SIZE));
    return MONITOR_OK;
}

static MONITORRESULT Capabilities(void *context, int index, DWORD patience, char text[HOST_CAPABILITIES_SIZE])
{
    WINDOWSMONITOR monitor;
    std::string capabilities;
    if (WindowsMonitorCapabilities(From(context), index, patience, &monitor, &capabilities) != 0)
        return MONITOR_FAILED;
    const std::string plain = PlainCapabilities(capabilities);
    memset(text, 0, HOST_CAPABILITIES_SIZE);
    memcpy(text, plain.data(), std::min<size_t>(plain.size(), HOST_CAPABILITIES_SIZE - 1));
    return MONITOR_OK;
}

static MONITORRESULT Edid(void *context, int index, BYTE block[HOST_EDID_SIZE])
{
    WINDOWSMONITOR monitor;
    if (!MonitorAt(From(context), index, &monitor) || !monitor.found.hasEdid)
        return MONITOR_FAILED;
    memcpy(block, monitor.found.edid.data(), HOST_EDID_SIZE);
    return MONITOR_OK;
}

ACCESSANSWER ReadWindowsMonitor(const WINDOWSMONITOR &monitor, BYTE code, DWORD patience)
{
    if (monitor.override.never[code])
        return {OUR_ERROR_NEVER, 0, 0};
    ACCESSANSWER answer = AskMonitorWorker(monitor.worker.get(), ACCESS_READ, code, 0, patience);
    if (!answer.error && monitor.override.maxima[code] >= 0)
        answer.maximum = static_cast<WORD>(monitor.override.maxima[code]);
    return answer;
}

static MONITORRESULT GetVcp(void *context, int index, DWORD patience, BYTE code, WORD *value, WORD *maximum)
{
    WINDOWSMONITOR monitor;
    if (!MonitorAt(From(context), index, &monitor))
        return MONITOR_FAILED;
    const ACCESSANSWER answer = ReadWindowsMonitor(monitor, code, patience);
    if (answer.error)
        return MONITOR_FAILED;
    *value = answer.value;
    *maximum = answer.maximum;
    return MONITOR_OK;
}

static MONITORRESULT SetVcp(void *context, int index, DWORD patience, BYTE code, WORD value)
{
    WINDOWSMONITOR monitor;
    if (!MonitorAt(From(context), index, &monitor) || monitor.override.never[code])
        return MONITOR_FAILED;
    const ACCESSANSWER answer = AskMonitorWorker(monitor.worker.get(), ACCESS_WRITE, code, value, patience);
    return answer.error ? MONITOR_FAILED : MONITOR_OK;
}

// Neither changes anything in a monitor; it only has to exist.
static MONITORRESULT InputList(void *context, int index, const DWORD[HOST_INPUT_COUNT])
{
    return index >= 0 && index < Count(context) ? MONITOR_OK : MONITOR_FAILED;
}

static MONITORRESULT DirectLink(void *context, int index, bool)
{
    return index >= -1 && index < Count(context) ? MONITOR_OK : MONITOR_FAILED;
}

static bool Post(void *context, int index, const MONITORJOB &job)
{
    WINDOWSMONITOR monitor;
    return MonitorAt(From(context), index, &monitor) && PostToMonitorWorker(monitor.worker, job);
}

MONITORBACKEND WindowsBackend(WINDOWSMONITORS *monitors)
{
    return {monitors, Count, Name, Capabilities, Edid, GetVcp, SetVcp, InputList, DirectLink, Post};
}
