// Loads the plug-in library, asks it for its slots, and refuses one that could not be driven safely.
#pragma once

#include <windows.h>

#include <string>

#include "kernel/link/host_protocol.h"

struct PLUGIN {
    HMODULE hModule;
    const PLUGINSLOT *slots; // PLUGIN_SLOT_COUNT entries; all but the last can be called
};

struct PLUGINTEXTS {
    std::wstring title, description, version;
};

// Loads `path` and takes its slot table. Returns false with "PATH: REASON" in *error; nothing stays loaded then.
bool LoadPlugin(const std::string &path, PLUGIN *plugin, std::string *error);

// Slot 0: hands the plug-in our window and its endpoint identifier. Returns false when it did not start. Window's
// thread.
bool InitPlugin(const PLUGIN *plugin, HWND hWnd, WORD wPluginID);

// Slot 1. A text that the plug-in leaves out comes back empty.
PLUGINTEXTS GetPluginTexts(const PLUGIN *plugin);

// Slot 15, on the window's thread. Returns its result. The library may be unloaded afterwards.
int StopPlugin(const PLUGIN *plugin);

// Unloads the library; no thread may be inside it.
void UnloadPlugin(PLUGIN *plugin);
