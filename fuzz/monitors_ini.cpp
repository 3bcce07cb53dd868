// monitors.ini, which its owner writes by hand, and what it says of a monitor.
#include "fuzz/fuzz.h"
#include "host/windows_monitors/monitor_overrides.h"
#include "kernel/link/host_sizes.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    const OVERRIDEFILE file = ParseOverrides(text);
    int lastLine = 0;
    for (const INIFAULT &fault : file.faults) {
        FUZZ_CHECK(fault.line > lastLine && !fault.reason.empty());
        lastLine = fault.line;
    }
    for (const OVERRIDESECTION &section : file.sections) {
        const std::vector<std::string> serials = {section.serial}, models = {section.model};
        const MONITOROVERRIDE all = OverrideFor(file, {section.product, serials, models});
        FUZZ_CHECK(!all.titles.empty());
        FUZZ_CHECK(all.model.size() <= HOST_NAME_SIZE && all.capabilities.size() < HOST_CAPABILITIES_SIZE);
        for (const int maximum : all.maxima)
            FUZZ_CHECK(maximum == -1 || (maximum >= 1 && maximum <= 0xFFFF));
        const ACCESSMANNERS manners = MannersFor(all), usual;
        FUZZ_CHECK(manners.tries >= 1 && manners.tries <= TRY_LIMIT);
        FUZZ_CHECK(manners.pauseToSettle >= 1 && manners.pauseToSettle <= PAUSE_LIMIT);
        FUZZ_CHECK(manners.pauseOfRetry >= 1 && usual.pauseOfRetry >= 1);
    }
    return 0;
}
