// Keeps capability strings between runs, since reading one takes seconds, and remembers a read that the process did not
// survive.
//
// All lies in one folder: "capabilities.txt" with the strings, and a marker "reading KEY" while a string is being read,
// with a line for each process that was at it. A file is written whole, under another name, and then renamed. One that
// is damaged counts as not there.
#pragma once

#include <windows.h>

#include <mutex>
#include <string>

#include "host/windows_monitors/kept_text.h"

struct CAPABILITYSTORE {
    std::string folder; // empty: nothing is kept
    std::mutex mutex;   // one at a time
};

constexpr size_t CAPABILITY_STRIKES = 2;
constexpr size_t KEPT_LIMIT = 64; // strings; the one that was kept first goes

// The folder for this user: "Lumivane 2" in the local application data. Empty when Windows names none.
std::string DefaultStoreFolder();

// The functions below may be called on any thread. A key is a file name's worth of letters, digits and '-'.

// The string kept for a monitor; empty: none.
std::string FindKeptCapabilities(CAPABILITYSTORE *store, const std::string &key);

// Keeps a string. An empty one is not kept. Returns false when the file could not be written.
bool KeepCapabilities(CAPABILITYSTORE *store, const std::string &key, const std::string &text);

// Puts up the marker before a read, and takes it down once the read has come to an end, with earlier strikes.
bool MarkCapabilityRead(CAPABILITYSTORE *store, const std::string &key);
void UnmarkCapabilityRead(CAPABILITYSTORE *store, const std::string &key);

// Takes the marker of this process alone down: the program ends, and the read has done nothing to it.
void TakeBackCapabilityMark(CAPABILITYSTORE *store, const std::string &key);

// How often a process has ended in the middle of reading this string: one that was ended by a log-off may be one of
// them. With CAPABILITY_STRIKES the string is not read any more.
size_t CapabilityReadStrikes(CAPABILITYSTORE *store, const std::string &key);

// Forgets all strings and markers.
void ForgetCapabilities(CAPABILITYSTORE *store);
