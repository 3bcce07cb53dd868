// Monitors that exist only as descriptions: what they answer, what a write changes, what a button does.
#include "host/simulated/simulated_monitor.h"

#include "monitor/vcp_codes.h"

#include <algorithm>
#include <cstring>

// ---- State ----------------------------------------------------------------------------------------------------------

static bool IsEcoOn(const SIMULATEDMONITOR *monitor)
{
    const SIMULATEDFEATURE &eco = monitor->features[VCP_ECO_MODE];
    return eco.present && eco.value != 0;
}

// Where the value that holds now is kept.
static WORD *ActiveValue(SIMULATEDMONITOR *monitor, BYTE code)
{
    SIMULATEDFEATURE &feature = monitor->features[code];
    return feature.file.ecoValue >= 0 && IsEcoOn(monitor) ? &feature.ecoValue : &feature.value;
}

static void ResetFeature(SIMULATEDMONITOR *monitor, BYTE code)
{
    SIMULATEDFEATURE &feature = monitor->features[code];
    feature.value = feature.file.value;
    feature.ecoValue = static_cast<WORD>(feature.file.ecoValue);
}

static void AddListedFeature(SIMULATEDMONITOR *monitor, const CAPABILITYCODE &listed)
{
    SIMULATEDFEATURE &feature = monitor->features[listed.code];
    feature.present = true;
    feature.file.code = listed.code;
    feature.file.ecoValue = feature.file.delay = -1;
    feature.file.maximum = 255;
    if (!listed.values.empty()) {
        feature.file.value = listed.values[0];
        feature.file.maximum = *std::max_element(listed.values.begin(), listed.values.end());
    }
}

void OpenSimulation(SIMULATION *simulation)
{
    simulation->hEnd = CreateEventW(nullptr, TRUE, FALSE, nullptr);
    simulation->changed = nullptr;
    simulation->changedContext = nullptr;
}

static void InitMonitor(SIMULATEDMONITOR *monitor, const MONITORFILE &file)
{
    memset(monitor->features, 0, sizeof monitor->features);
    monitor->file = file;
    monitor->codes = CapabilityCodes(file.capabilities);
    monitor->pressed = BUTTON_PRESSED_NONE;
    monitor->press = PRESS_NONE;
    monitor->pressCount = 0;
    monitor->directLink = false;
    for (const CAPABILITYCODE &listed : monitor->codes)
        AddListedFeature(monitor, listed);
    for (const MONITORFEATURE &described : file.features) {
        monitor->features[described.code].present = true;
        monitor->features[described.code].file = described;
    }
    for (int code = 0; code < 256; code++)
        ResetFeature(monitor, static_cast<BYTE>(code));
}

void AddSimulatedMonitor(SIMULATION *simulation, const MONITORFILE &file)
{
    std::lock_guard lock(simulation->mutex);
    InitMonitor(&simulation->monitors.emplace_back(), file);
}

void ReplaceSimulatedMonitors(SIMULATION *simulation, const std::vector<MONITORFILE> &files)
{
    std::lock_guard lock(simulation->mutex);
    std::deque<SIMULATEDMONITOR> before;
    before.swap(simulation->monitors);
    for (const MONITORFILE &file : files) {
        const auto same = std::find_if(before.begin(), before.end(), [&](const SIMULATEDMONITOR &monitor) {
            return monitor.file.path == file.path && monitor.file.digest == file.digest;
        });
        if (same == before.end()) {
            InitMonitor(&simulation->monitors.emplace_back(), file);
        } else {
            simulation->monitors.push_back(std::move(*same));
            before.erase(same);
        }
    }
}

void EndSimulationDelays(SIMULATION *simulation)
{
    SetEvent(simulation->hEnd);
}

void ResumeSimulationDelays(SIMULATION *simulation)
{
    ResetEvent(simulation->hEnd);
}

void CloseSimulation(SIMULATION *simulation)
{
    CloseHandle(simulation->hEnd);
    simulation->hEnd = nullptr;
    simulation->monitors.clear();
}

static SIMULATEDMONITOR *MonitorAt(SIMULATION *simulation, int monitor)
{
    if (monitor < 0 || monitor >= static_cast<int>(simulation->monitors.size()))
        return nullptr;
    return &simulation->monitors[static_cast<size_t>(monitor)];
}

static void TellChange(SIMULATION *simulation, int monitor)
{
    if (simulation->changed)
        simulation->changed(simulation->changedContext, monitor);
}

// ---- Writing --------------------------------------------------------------------------------------------------------

// Whether a code takes only the values that the capability string lists for it.
static bool IsListedValue(const SIMULATEDMONITOR *monitor, BYTE code, WORD value)
{
    const CAPABILITYCODE *listed = FindCapabilityCode(monitor->codes, code);
    if (!listed || listed->values.empty())
        return true;
    return std::find(listed->values.begin(), listed->values.end(), value) != listed->values.end();
}

static void ResetGroup(SIMULATEDMONITOR *monitor, BYTE resetCode)
{
    static const BYTE luminance[] = {VCP_BRIGHTNESS, VCP_CONTRAST};
    static const BYTE colour[] = {VCP_COLOR_PRESET, VCP_RED_GAIN, VCP_GREEN_GAIN, VCP_BLUE_GAIN};
    if (resetCode == VCP_RESTORE_DEFAULTS)
        for (int code = 0; code < 256; code++)
            ResetFeature(monitor, static_cast<BYTE>(code));
    else if (resetCode == VCP_RESTORE_LUMINANCE)
        for (const BYTE code : luminance)
            ResetFeature(monitor, code);
    else
        for (const BYTE code : colour)
            ResetFeature(monitor, code);
}

static bool IsResetCode(BYTE code)
{
    return code == VCP_RESTORE_DEFAULTS || code == VCP_RESTORE_LUMINANCE || code == VCP_RESTORE_COLOR;
}

static void ClearButtonRegister(SIMULATEDMONITOR *monitor)
{
    if (monitor->press == PRESS_WAITING)
        monitor->press = PRESS_LOST;
    else if (monitor->press == PRESS_READ)
        monitor->press = PRESS_TAKEN;
    monitor->pressed = BUTTON_PRESSED_NONE;
}

static MONITORRESULT WriteFeature(SIMULATEDMONITOR *monitor, BYTE code, WORD value)
{
    const SIMULATEDFEATURE &feature = monitor->features[code];
    if (feature.file.readOnly)
        return MONITOR_IGNORED;
    if (feature.file.buttonRegister) {
        if (value != BUTTON_PRESSED_NONE)
            return MONITOR_IGNORED;
        ClearButtonRegister(monitor);
        return MONITOR_OK;
    }
    if (IsResetCode(code)) {
        if (value)
            ResetGroup(monitor, code);
        return value ? MONITOR_OK : MONITOR_IGNORED;
    }
    if (feature.file.momentary)
        return MONITOR_OK;
    if (feature.file.userPresets && monitor->features[VCP_COLOR_PRESET].value < COLOR_PRESET_FIRST_USER)
        return MONITOR_IGNORED;
    if (!IsListedValue(monitor, code, value))
        return MONITOR_IGNORED;
    if (value > feature.file.maximum && feature.file.refusesAbove)
        return MONITOR_IGNORED;
    *ActiveValue(monitor, code) = std::min(value, feature.file.maximum);
    return MONITOR_OK;
}

// ---- The backend ----------------------------------------------------------------------------------------------------

static SIMULATION *From(void *context)
{
    return static_cast<SIMULATION *>(context);
}

static int Count(void *context)
{
    std::lock_guard lock(From(context)->mutex);
    return static_cast<int>(From(context)->monitors.size());
}

// How long an access takes, or how it ends without the monitor's taking part. `code` is -1 for what is no VCP access.
static MONITORRESULT BeginAccess(SIMULATION *simulation, int index, DWORD patience, int code)
{
    DWORD delay = 0;
    MONITORRESULT result = MONITOR_OK;
    {
        std::lock_guard lock(simulation->mutex);
        const SIMULATEDMONITOR *monitor = MonitorAt(simulation, index);
        if (!monitor)
            return MONITOR_FAILED;
        delay = static_cast<DWORD>(monitor->file.delay);
        if (monitor->file.silent)
            result = MONITOR_SILENT;
        if (code >= 0) {
            const SIMULATEDFEATURE &feature = monitor->features[code];
            if (feature.present && feature.file.delay >= 0)
                delay = static_cast<DWORD>(feature.file.delay);
            if (feature.file.silent)
                result = MONITOR_SILENT;
            else if (feature.file.fails)
                result = MONITOR_FAILED;
        }
    }
    const bool isOver = delay == 0 || WaitForSingleObject(simulation->hEnd, std::min(delay, patience)) == WAIT_OBJECT_0;
    return !isOver && delay > patience ? MONITOR_FAILED : result;
}

// The name is what the host knows from the EDID: no access to the monitor's DDC/CI side.
static MONITORRESULT Name(void *context, int index, DWORD, char text[HOST_NAME_SIZE])
{
    std::lock_guard lock(From(context)->mutex);
    const SIMULATEDMONITOR *monitor = MonitorAt(From(context), index);
    if (!monitor)
        return MONITOR_FAILED;
    memset(text, 0, HOST_NAME_SIZE);
    memcpy(text, monitor->file.model.data(), std::min<size_t>(monitor->file.model.size(), HOST_NAME_SIZE));
    return MONITOR_OK;
}

static MONITORRESULT Capabilities(void *context, int index, DWORD patience, char text[HOST_CAPABILITIES_SIZE])
{
    const MONITORRESULT result = BeginAccess(From(context), index, patience, -1);
    if (result != MONITOR_OK)
        return result;
    std::lock_guard lock(From(context)->mutex);
    const std::string &capabilities = MonitorAt(From(context), index)->file.capabilities;
    memset(text, 0, HOST_CAPABILITIES_SIZE);
    memcpy(text, capabilities.data(), std::min<size_t>(capabilities.size(), HOST_CAPABILITIES_SIZE - 1));
    return MONITOR_OK;
}

static MONITORRESULT Edid(void *context, int index, BYTE block[HOST_EDID_SIZE])
{
    std::lock_guard lock(From(context)->mutex);
    const SIMULATEDMONITOR *monitor = MonitorAt(From(context), index);
    if (!monitor)
        return MONITOR_FAILED;
    memcpy(block, monitor->file.edid.data(), HOST_EDID_SIZE);
    return MONITOR_OK;
}

static MONITORRESULT GetVcp(void *context, int index, DWORD patience, BYTE code, WORD *value, WORD *maximum)
{
    const MONITORRESULT result = BeginAccess(From(context), index, patience, code);
    if (result != MONITOR_OK)
        return result;
    std::lock_guard lock(From(context)->mutex);
    SIMULATEDMONITOR *monitor = MonitorAt(From(context), index);
    const SIMULATEDFEATURE &feature = monitor->features[code];
    if (!feature.present)
        return MONITOR_FAILED;
    if (feature.file.buttonRegister) {
        // Both words carry the button in their high byte; readers look at either.
        *value = *maximum = static_cast<WORD>(monitor->pressed << 8);
        if (monitor->press == PRESS_WAITING)
            monitor->press = PRESS_READ;
        return MONITOR_OK;
    }
    *value = *ActiveValue(monitor, code);
    *maximum = feature.file.maximum;
    return MONITOR_OK;
}

// A monitor does not acknowledge a write, so one that it does not know counts as taken and without effect.
static MONITORRESULT SetVcp(void *context, int index, DWORD patience, BYTE code, WORD value)
{
    MONITORRESULT result = BeginAccess(From(context), index, patience, code);
    if (result != MONITOR_OK)
        return result;
    {
        std::lock_guard lock(From(context)->mutex);
        SIMULATEDMONITOR *monitor = MonitorAt(From(context), index);
        result = monitor->features[code].present ? WriteFeature(monitor, code, value) : MONITOR_IGNORED;
    }
    if (result == MONITOR_OK)
        TellChange(From(context), index);
    return result;
}

// A monitor has no use for the list; it only has to exist.
static MONITORRESULT InputList(void *context, int index, const DWORD[HOST_INPUT_COUNT])
{
    std::lock_guard lock(From(context)->mutex);
    return MonitorAt(From(context), index) ? MONITOR_OK : MONITOR_FAILED;
}

static MONITORRESULT DirectLink(void *context, int index, bool on)
{
    SIMULATION *simulation = From(context);
    const int count = Count(context);
    if (index < -1 || index >= count)
        return MONITOR_FAILED;
    for (int i = 0; i < count; i++) {
        if (index != -1 && i != index)
            continue;
        {
            std::lock_guard lock(simulation->mutex);
            MonitorAt(simulation, i)->directLink = on;
        }
        TellChange(simulation, i);
    }
    return MONITOR_OK;
}

MONITORBACKEND SimulationBackend(SIMULATION *simulation)
{
    return {simulation, Count, Name, Capabilities, Edid, GetVcp, SetVcp, InputList, DirectLink};
}

// ---- A person at the monitor ----------------------------------------------------------------------------------------

static const SIMULATEDFEATURE *ButtonRegister(const SIMULATEDMONITOR *monitor)
{
    for (const SIMULATEDFEATURE &feature : monitor->features)
        if (feature.present && feature.file.buttonRegister)
            return &feature;
    return nullptr;
}

static BYTE LockMask(const SIMULATEDMONITOR *monitor)
{
    const SIMULATEDFEATURE &lock = monitor->features[VCP_BUTTON_LOCK];
    return lock.present ? static_cast<BYTE>(lock.value) : 0;
}

// The lock takes a button's own function away, not its report: that is how a locked button can start a program.
bool PressMonitorButton(SIMULATION *simulation, int index, int button)
{
    {
        std::lock_guard lock(simulation->mutex);
        SIMULATEDMONITOR *monitor = MonitorAt(simulation, index);
        const BYTE bit = ButtonBit(button);
        if (!monitor || !bit || monitor->file.labels[static_cast<size_t>(button - 1)].empty())
            return false;
        const bool isLocked = (LockMask(monitor) & bit) != 0;
        const SIMULATEDFEATURE *reports = ButtonRegister(monitor);
        const bool isReported = reports && !(isLocked && reports->file.hidesLocked);
        monitor->pressCount++;
        monitor->press = isReported ? PRESS_WAITING : PRESS_UNREPORTED;
        if (isReported)
            monitor->pressed = bit;
        SIMULATEDFEATURE &power = monitor->features[VCP_POWER_MODE];
        if (button == MONITOR_BUTTON_COUNT && !isLocked && power.present)
            power.value = power.value == POWER_MODE_ON ? POWER_MODE_OFF : POWER_MODE_ON;
    }
    TellChange(simulation, index);
    return true;
}

static MONITORSTATE::LEVEL LevelOf(SIMULATEDMONITOR *monitor, BYTE code)
{
    const SIMULATEDFEATURE &feature = monitor->features[code];
    if (!feature.present)
        return {0, 0};
    return {*ActiveValue(monitor, code), feature.file.maximum};
}

MONITORSTATE GetMonitorState(SIMULATION *simulation, int index)
{
    std::lock_guard lock(simulation->mutex);
    MONITORSTATE state = {};
    SIMULATEDMONITOR *monitor = MonitorAt(simulation, index);
    if (!monitor)
        return state;
    const SIMULATEDFEATURE *features = monitor->features;
    state.model = monitor->file.model;
    state.labels = monitor->file.labels;
    state.powered = !features[VCP_POWER_MODE].present || features[VCP_POWER_MODE].value == POWER_MODE_ON;
    state.eco = IsEcoOn(monitor);
    state.directLink = monitor->directLink;
    state.preset = features[VCP_COLOR_PRESET].value;
    state.isUserPreset = state.preset >= COLOR_PRESET_FIRST_USER;
    state.hasChannel = features[VCP_TV_CHANNEL].present;
    state.channel = features[VCP_TV_CHANNEL].value;
    state.input = features[VCP_INPUT_SOURCE].value;
    state.lockMask = LockMask(monitor);
    state.reportsButtons = ButtonRegister(monitor) != nullptr;
    state.hasLock = features[VCP_BUTTON_LOCK].present;
    state.pressed = monitor->pressed;
    state.press = monitor->press;
    state.pressCount = monitor->pressCount;
    state.brightness = LevelOf(monitor, VCP_BRIGHTNESS);
    state.contrast = LevelOf(monitor, VCP_CONTRAST);
    state.gains[0] = LevelOf(monitor, VCP_RED_GAIN);
    state.gains[1] = LevelOf(monitor, VCP_GREEN_GAIN);
    state.gains[2] = LevelOf(monitor, VCP_BLUE_GAIN);
    return state;
}
