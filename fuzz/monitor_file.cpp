// The description of a simulated monitor.
#include "host/simulated/monitor_file.h"

#include "fuzz/fuzz.h"
#include "kernel/link/host_sizes.h"

int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const std::string text(reinterpret_cast<const char *>(data), size);
    MONITORFILE file = {};
    std::string error;
    if (!ParseMonitorFile(text, "name", &file, &error)) {
        FUZZ_CHECK(error.rfind("name", 0) == 0);
        return 0;
    }
    FUZZ_CHECK(!file.model.empty() && file.model.size() <= HOST_NAME_SIZE);
    FUZZ_CHECK(file.capabilities.size() < HOST_CAPABILITIES_SIZE);
    FUZZ_CHECK(!EdidFault(file.edid));
    FUZZ_CHECK(file.delay >= 0 && file.delay <= static_cast<int>(MONITOR_DELAY_LIMIT));
    for (const MONITORFEATURE &feature : file.features)
        FUZZ_CHECK(feature.delay >= -1 && feature.delay <= static_cast<int>(MONITOR_DELAY_LIMIT));
    return 0;
}
