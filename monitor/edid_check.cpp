// The EDID check. No monitor is checked yet.
#include "monitor/edid_check.h"

void CheckEdidAtStop() {}
