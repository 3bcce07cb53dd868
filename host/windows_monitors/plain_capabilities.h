// Capability strings of real monitors: which one may be kept, and what the plug-in gets of it. Makers leave out blanks,
// write a model without its parentheses, put items in any order and list more than the plug-in's buffer holds; the
// plug-in reads the plain form alone right.
//
// Plain functions; any thread.
#pragma once

#include <string>
#include <string_view>

// Why a string that was read is damaged, as one is whose transfer was disturbed (English); null when it may be kept:
// printable, its parentheses balanced, a vcp list with a code in it.
const char *CapabilityFault(std::string_view raw);

// What the plug-in gets: "(mccs_ver(2.1)vcp(10 12 14(05 08 0B) 60(0F 11) ...))", less than HOST_CAPABILITIES_SIZE bytes
// of ASCII. All codes that are listed, each once, with the values of 0x14 and 0x60 that the plug-in has room for (below
// 16); a list without such values is there as "()", or the plug-in would take the next code's. The codes that it uses
// come first, so that those left out for want of room are ones that it does not. A string without a vcp list gives the
// version alone.
std::string PlainCapabilities(std::string_view raw);
