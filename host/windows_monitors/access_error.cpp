// What Windows' Monitor Configuration API says about a failed access: one table of codes.
#include "host/windows_monitors/access_error.h"

#include "host/base/text.h"

static const struct {
    DWORD code;
    ACCESSFAULT fault;
    const char *words;
} s_errors[] = {
    {ERROR_INVALID_HANDLE, FAULT_GONE, "the handle of the monitor is not valid"},
    {ERROR_NOT_FOUND, FAULT_UNSUPPORTED, "the display has no monitor"},
    {ERROR_NOT_SUPPORTED, FAULT_UNSUPPORTED, "the graphics driver does not support it"},
    {ERROR_CALL_NOT_IMPLEMENTED, FAULT_UNSUPPORTED, "this system has the function without its contents"},

    {0xC0262580, FAULT_UNSUPPORTED, "the graphics output has no I2C bus"},
    {0xC0262581, FAULT_UNSUPPORTED, "nothing answers at the monitor's address on the I2C bus: DDC/CI may be off"},
    {0xC0262582, FAULT_PASSING, "error while sending on the I2C bus"},
    {0xC0262583, FAULT_PASSING, "error while receiving on the I2C bus"},
    {GRAPHICS_VCP_NOT_SUPPORTED, FAULT_UNSUPPORTED, "the monitor does not know the code"},
    {0xC0262585, FAULT_PASSING, "the monitor's answer makes no sense"},
    {0xC0262586, FAULT_PASSING, "the monitor's timing report has a wrong status byte"},
    {GRAPHICS_INVALID_CAPABILITIES, FAULT_PASSING, "the capability string is not well formed"},
    {0xC0262588, FAULT_PASSING, "internal error of the Monitor Configuration API"},
    {0xC0262589, FAULT_PASSING, "the answer has another command than the question"},
    {0xC026258A, FAULT_PASSING, "the answer has a wrong length"},
    {0xC026258B, FAULT_PASSING, "the answer has a wrong checksum"},
    {GRAPHICS_INVALID_MONITOR_HANDLE, FAULT_GONE, "the handle of the monitor is not valid"},
    {GRAPHICS_MONITOR_NO_LONGER_EXISTS, FAULT_GONE, "the monitor has gone, or the display mode has changed"},

    {0xC02625D8, FAULT_PASSING, "the answer has a value above its maximum"},
    {0xC02625D9, FAULT_UNSUPPORTED, "the monitor names an MCCS version that does not exist"},
    {0xC02625DA, FAULT_UNSUPPORTED, "the monitor breaks the rules of its MCCS version"},
    {0xC02625DB, FAULT_UNSUPPORTED, "the monitor names two MCCS versions"},
    {0xC02625DC, FAULT_UNSUPPORTED, "the monitor's MCCS version is not supported"},
    {0xC02625DE, FAULT_UNSUPPORTED, "the monitor names a display technology that does not exist"},
    {0xC02625DF, FAULT_UNSUPPORTED, "the monitor names a colour temperature that is not supported"},
    {GRAPHICS_CONSOLE_SESSION_ONLY, FAULT_UNSUPPORTED, "monitors can be reached from the session at the computer only"},
    {0xC02625E1, FAULT_GONE, "no display device has that name"},
    {0xC02625E2, FAULT_GONE, "the display device is not part of the desktop"},
    {0xC02625E3, FAULT_UNSUPPORTED, "mirroring display devices have no monitors"},
    {0xC02625E4, FAULT_UNSUPPORTED, "a pointer is wrong"},
    {0xC02625E5, FAULT_GONE, "the display device has no monitor"},
    {0xC02625E6, FAULT_PASSING, "the number of monitors changed meanwhile"},
    {0xC02625E7, FAULT_PASSING, "internal error of the graphics system"},
    {0xC02605E8, FAULT_PASSING, "the session is changing over at this moment"},

    {OUR_ERROR_TIMEOUT, FAULT_PASSING, "no answer within the time that a request has"},
    {OUR_ERROR_STUCK, FAULT_PASSING, "a call into the graphics driver has not come back"},
    {OUR_ERROR_NEVER, FAULT_UNSUPPORTED, "monitors.ini says never"},
    {OUR_ERROR_SKIPPED, FAULT_UNSUPPORTED, "not read: a run of this program ended in the middle of reading it"},
    {OUR_ERROR_STOPPED, FAULT_UNSUPPORTED, "the program is ending"},
    {OUR_ERROR_EMPTY, FAULT_PASSING, "the capability string is empty"},
    {OUR_ERROR_REFUSED, FAULT_UNSUPPORTED, "a write that cannot be meant for this monitor"},
};

ACCESSFAULT AccessFault(DWORD error)
{
    for (const auto &entry : s_errors)
        if (entry.code == error)
            return entry.fault;
    return FAULT_PASSING;
}

std::string AccessErrorText(DWORD error)
{
    for (const auto &entry : s_errors)
        if (entry.code == error)
            return (error & 0xF0000000) == 0x20000000 ? entry.words : Format("0x%08lX %s", error, entry.words);
    return Format("0x%08lX ", error) + SystemErrorText(error);
}
