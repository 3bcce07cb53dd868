// Loads the plug-in library through its one export, and wraps the slots that take more than a plain call.
#include "host/plugin_loader.h"

#include "host/base/packet_log.h"
#include "host/base/text.h"

// Why the table cannot be used; null when it can.
static const char *FindTableFault(int result, const PLUGINFUNC &table)
{
    if (result != 1)
        return "GetPluginFunc refuses to give its table";
    if (table.nCount != PLUGIN_SLOT_COUNT)
        return "the slot table has not 18 entries: this is another version of the interface";
    if (!table.lpFuncTable)
        return "GetPluginFunc gives no slot table";
    for (int slot = 0; slot < PLUGIN_SLOT_COUNT - 1; slot++)
        if (!table.lpFuncTable[slot])
            return "a slot of the table that must be there is missing";
    return nullptr;
}

bool LoadPlugin(const std::string &path, PLUGIN *plugin, std::string *error)
{
    *plugin = {};
    if (!FitsAnsi(Widen(path))) { // it would read and write its settings in a folder that is not there
        *error = path + ": this system's code page has not all characters of the folder's name; "
                        "move the program to a folder with a plain name";
        return false;
    }
    const HMODULE module = LoadLibraryW(Widen(path).c_str());
    if (!module) {
        const DWORD code = GetLastError();
        *error = path + ": the plug-in cannot be loaded: " + SystemErrorText(code);
        return false;
    }
    const FARPROC found = GetProcAddress(module, "GetPluginFunc");
    const char *fault = "it is no plug-in: it does not export GetPluginFunc";
    PLUGINFUNC table = {};
    if (found)
        fault = FindTableFault(reinterpret_cast<GETPLUGINFUNC>(reinterpret_cast<void *>(found))(&table), table);
    if (fault) {
        *error = path + ": " + fault;
        FreeLibrary(module);
        return false;
    }
    *plugin = {module, table.lpFuncTable};
    return true;
}

// The block of slot 0 is the window handle alone, without the head that other blocks have.
bool InitPlugin(const PLUGIN *plugin, HWND hWnd, WORD wPluginID)
{
    HOSTPACKET packet = {};
    packet.dst.wID = wPluginID;
    packet.dwDataSize = sizeof hWnd;
    packet.lpData = reinterpret_cast<HOSTDATA *>(&hWnd);
    const int result = plugin->slots[PLUGIN_SLOT_INIT](&packet);
    LogLine("host>plugin", "slot", Format("slot=%d result=%d", PLUGIN_SLOT_INIT, result));
    return result == 1;
}

static std::wstring PluginText(const char *text)
{
    return text ? WidenShiftJis(text) : std::wstring();
}

PLUGINTEXTS GetPluginTexts(const PLUGIN *plugin)
{
    HOSTPACKET packet = {};
    if (plugin->slots[PLUGIN_SLOT_INFO](&packet) != 1 || packet.dwDataSize != sizeof(PLUGININFO) || !packet.lpData)
        return {};
    const PLUGININFO *info = reinterpret_cast<const PLUGININFO *>(packet.lpData);
    return {PluginText(info->lpszTitle), PluginText(info->lpszDescription), PluginText(info->lpszVersion)};
}

int StopPlugin(const PLUGIN *plugin)
{
    const int result = plugin->slots[PLUGIN_SLOT_STOP](nullptr);
    LogLine("host>plugin", "slot", Format("slot=%d result=%d", PLUGIN_SLOT_STOP, result));
    return result;
}

void UnloadPlugin(PLUGIN *plugin)
{
    if (plugin->hModule)
        FreeLibrary(plugin->hModule);
    *plugin = {};
}
