// A monitor in words: asks it for what is to be told, and writes it down.
#include "host/windows_monitors/monitor_description.h"

#include <algorithm>

#include "host/base/capability_text.h"
#include "host/base/text.h"
#include "monitor/vcp_codes.h"

// The codes that the product reads.
static const BYTE s_codes[] = {VCP_BRIGHTNESS, VCP_CONTRAST,    VCP_COLOR_PRESET,  VCP_RED_GAIN,
                               VCP_GREEN_GAIN, VCP_BLUE_GAIN,   VCP_INPUT_SOURCE,  VCP_ECO_MODE,
                               VCP_TV_CHANNEL, VCP_BUTTON_LOCK, VCP_BUTTON_PRESSED};

MONITORANSWERS AskMonitor(WINDOWSMONITORS *monitors, int index)
{
    MONITORANSWERS answers = {};
    answers.capabilitiesError =
        WindowsMonitorCapabilities(monitors, index, ACCESS_PATIENCE, &answers.monitor, &answers.capabilities);
    if (!answers.monitor.worker)
        return answers;
    {
        std::lock_guard lock(answers.monitor.worker->workshop->mutex);
        answers.source = answers.monitor.worker->state;
    }
    bool answersInTime = answers.capabilitiesError != OUR_ERROR_TIMEOUT && answers.capabilitiesError != OUR_ERROR_STUCK;
    for (const BYTE code : s_codes) {
        ACCESSANSWER answer = {OUR_ERROR_TIMEOUT, 0, 0};
        if (answersInTime)
            answer = ReadWindowsMonitor(answers.monitor, code, ACCESS_PATIENCE);
        answersInTime = answersInTime && answer.error != OUR_ERROR_TIMEOUT && answer.error != OUR_ERROR_STUCK;
        answers.readings.push_back({code, answer});
    }
    return answers;
}

static std::string Line(const char *what, const std::string &text)
{
    return Format("  %-13s ", what) + text + "\n";
}

static std::string DescribeDisplay(const DISPLAY &display)
{
    const RECT &area = display.area;
    return display.device +
           Format(", %ld x %ld at %ld,%ld", area.right - area.left, area.bottom - area.top, area.left, area.top) +
           (display.isPrimary ? ", primary" : "") + (display.adapter.empty() ? "" : ", " + display.adapter);
}

static std::string DescribeEdid(const WINDOWSMONITOR &monitor, bool isPrivate)
{
    const FOUNDMONITOR &found = monitor.found;
    if (!found.hasEdid)
        return Line("EDID", "not known: " + found.edidTrouble);
    const EDIDFACTS facts = ReadEdidFacts(found.edid);
    std::string text = EdidProduct(found.edid) + Format(", %u, %u x %u cm", facts.year, facts.widthCm, facts.heightCm) +
                       ", name " + Quoted(facts.name);
    if (!isPrivate)
        for (const std::string &serial : monitor.titles.serials)
            text += ", serial number " + serial;
    text = Line("EDID", text);
    if (!isPrivate)
        return text;
    const EDIDBLOCK block = BlankEdidSerial(found.edid);
    for (size_t row = 0; row < block.size(); row += 16) {
        std::string bytes;
        for (size_t i = row; i < row + 16; i++)
            bytes += Format("%02X ", block[i]);
        text += Line("", std::string(Trim(bytes)));
    }
    return text;
}

// The titles that a section of monitors.ini may have for this monitor.
static std::string PossibleTitles(const WINDOWSMONITOR &monitor, bool isPrivate)
{
    const MONITORTITLES &titles = monitor.titles;
    std::string text;
    for (const std::string &model : titles.models)
        text += ", [model " + model + "]";
    if (!titles.product.empty())
        text += ", [" + titles.product + "]";
    if (!isPrivate)
        for (const std::string &serial : titles.serials)
            text += ", [" + titles.product + " " + serial + "]";
    return text.empty() ? "(none)" : text.substr(2);
}

static std::string DescribeOverride(const WINDOWSMONITOR &monitor, bool isPrivate)
{
    const MONITOROVERRIDE &override = monitor.override;
    std::string text = Line(
        "monitors.ini", Format("%u sections fit; they may be called ", static_cast<unsigned>(override.titles.size())) +
                            PossibleTitles(monitor, isPrivate));
    if (!override.model.empty())
        text += Line("", "model " + override.model);
    if (!override.capabilities.empty())
        text += Line("", "capability string given");
    for (size_t code = 0; code < 256; code++) {
        if (override.maxima[code] >= 0)
            text += Line("", Format("maximum of %02X: %d", static_cast<unsigned>(code), override.maxima[code]));
        if (override.never[code])
            text += Line("", Format("never touches %02X", static_cast<unsigned>(code)));
    }
    return text;
}

static std::string CapabilitiesSource(const MONITORANSWERS &answers)
{
    if (answers.capabilitiesError)
        return AccessErrorText(answers.capabilitiesError) +
               (answers.capabilitiesError == OUR_ERROR_SKIPPED ? "; --fresh reads it again" : "");
    if (!answers.monitor.override.capabilities.empty())
        return "given by monitors.ini";
    return answers.source == CAPABILITIES_KEPT ? "kept from an earlier run; --fresh reads it again"
                                               : "read from the monitor";
}

static std::string DescribeCode(const CAPABILITYCODE &code)
{
    std::string text = Format("%02X %s", code.code, VcpName(code.code));
    if (code.hasValues)
        text += ":";
    for (const BYTE value : code.values)
        text += Format(" %02X", value);
    return text;
}

static std::string DescribeCapabilities(const MONITORANSWERS &answers)
{
    std::string text = Line("capabilities", CapabilitiesSource(answers));
    const std::string &string = answers.capabilities;
    if (string.empty())
        return text;
    text += Line("", Quoted(string));
    text += Line("", "model " + Quoted(CapabilityModel(string)) + ", MCCS version " +
                         Quoted(CapabilityItem(string, "mccs_ver")));
    for (const CAPABILITYCODE &code : CapabilityCodes(string))
        text += Line("", DescribeCode(code));
    return text;
}

// The product's own names for the codes from E0 on, which are this maker's.
static std::string CodeName(BYTE code)
{
    return code >= VCP_MAKERS_OWN ? std::string(VcpName(code)) + ", " + VcpShortName(code) : VcpName(code);
}

static std::string DescribeReadings(const MONITORANSWERS &answers)
{
    std::string text;
    for (const MONITORANSWERS::READING &reading : answers.readings) {
        const std::string name = Format("%02X %s", reading.code, CodeName(reading.code).c_str());
        const ACCESSANSWER &answer = reading.answer;
        text +=
            Line(text.empty() ? "values" : "",
                 Format("%-32s ", name.c_str()) +
                     (answer.error ? AccessErrorText(answer.error) : Format("%u of %u", answer.value, answer.maximum)));
    }
    return text;
}

std::string DescribeMonitor(int number, const MONITORANSWERS &answers, bool isPrivate)
{
    const WINDOWSMONITOR &monitor = answers.monitor;
    const std::string model =
        monitor.override.model.empty() ? MonitorModel(answers.capabilities, monitor.found) : monitor.override.model;
    return Format("Monitor %d: ", number) + model + "\n" + Line("display", DescribeDisplay(monitor.found.display)) +
           Line("description", monitor.found.description) + DescribeEdid(monitor, isPrivate) +
           DescribeOverride(monitor, isPrivate) + DescribeCapabilities(answers) + DescribeReadings(answers);
}
