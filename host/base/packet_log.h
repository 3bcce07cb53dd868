// The log of --log FILE: a line per packet, per access to a monitor and per event of the host.
//
// A line is UTF-8 text, fields separated by one blank:
//
//     TIME DIRECTION KIND [NAME=VALUE ...]
//
//     TIME       local time, 2024-05-31T14:07:09.250
//     DIRECTION  plugin>host, host>plugin, host>monitor, or host for an event within the host
//     KIND       request, notice, reply, malformed   (plugin>host)
//                reply, refused (the plug-in did not want that reply), command, slot   (host>plugin)
//                read, write, name, capabilities, edid, input-list, directlink   (host>monitor, with its result)
//                event                               (host)
//     VALUE      a decimal number, a hexadecimal one with 0x, a word, bytes as hexadecimal digits, or text in double
//                quotes, in which a backslash stands before quotes and backslashes and \xNN is a control character
//
// Examples:
//     2024-05-31T14:07:09.250 plugin>host request command=24 name=get-vcp id=5 monitor=0 code=0x10 feature=brightness
//     2024-05-31T14:07:09.271 host>monitor read monitor=0 code=0x10 feature=brightness value=80 max=100 result=ok ms=20
//     2024-05-31T14:07:09.271 host>plugin reply command=24 name=get-vcp id=5 code=0x10 feature=brightness value=80
//     max=100
#pragma once

#include <string>

// Creates the file (an existing one is replaced). Returns false and says why in *error when that fails.
bool OpenPacketLog(const std::string &path, std::string *error);

// Writes one line; the time is added. Does nothing while no log is open. Any thread; the line is in the file on return.
void LogLine(const char *direction, const char *kind, const std::string &fields);

// An event of the host in words: "host event text=...".
void LogEvent(const std::string &text);

void ClosePacketLog();
