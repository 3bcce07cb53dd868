// Programs by their windows, on both platform families, and by their shortcuts.
#include "profiles/app_path.h"

#include "kernel/base/platform.h"
#include "profiles/profile_store.h"

#include <objbase.h>
#include <shlobj.h>
#include <tlhelp32.h>

#include <cstring>

// ---- Windows NT family --------------------------------------------------------------------------------------------

constexpr DWORD MODULE_COUNT = 1024; // more than a process has; the first, its executable, is what counts

static bool FirstModulePath(HANDLE hProcess, char *lpBuffer, DWORD cbBuffer)
{
    HMODULE modules[MODULE_COUNT];
    DWORD needed = 0;
    if (!g_lpfnEnumProcessModules || !g_lpfnGetModuleFileNameExA)
        return false;
    if (!g_lpfnEnumProcessModules(hProcess, modules, sizeof modules, &needed) || needed < sizeof modules[0])
        return false;
    const DWORD length = g_lpfnGetModuleFileNameExA(hProcess, modules[0], lpBuffer, cbBuffer);
    lpBuffer[cbBuffer - 1] = '\0';
    return length != 0;
}

static bool ProcessPathNT(DWORD processId, char *lpBuffer, DWORD cbBuffer)
{
    const HANDLE hProcess = OpenProcess(PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, processId);
    if (!hProcess)
        return false;
    const bool found = FirstModulePath(hProcess, lpBuffer, cbBuffer);
    CloseHandle(hProcess);
    return found;
}

// ---- Windows 95 family --------------------------------------------------------------------------------------------

// The tool-help functions, which early versions of the other family lack.
typedef HANDLE(WINAPI *CREATETOOLHELP32SNAPSHOT)(DWORD dwFlags, DWORD dwProcessId);
typedef BOOL(WINAPI *PROCESS32STEP)(HANDLE hSnapshot, PROCESSENTRY32 *lpEntry);
static_assert(sizeof(PROCESSENTRY32) == 296);

static void FindProcess(HANDLE hSnapshot, DWORD processId, char *lpBuffer, DWORD cbBuffer)
{
    const HMODULE hKernel = GetModuleHandleA("kernel32.dll");
    const auto first = FindFunction<PROCESS32STEP>(hKernel, "Process32First");
    const auto next = FindFunction<PROCESS32STEP>(hKernel, "Process32Next");
    if (!first || !next)
        return;
    PROCESSENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    for (BOOL found = first(hSnapshot, &entry); found; found = next(hSnapshot, &entry))
        if (entry.th32ProcessID == processId) {
            lstrcpynA(lpBuffer, entry.szExeFile, static_cast<int>(cbBuffer));
            return;
        }
}

static bool ProcessPath95(DWORD processId, char *lpBuffer, DWORD cbBuffer)
{
    const auto createSnapshot =
        FindFunction<CREATETOOLHELP32SNAPSHOT>(GetModuleHandleA("kernel32.dll"), "CreateToolhelp32Snapshot");
    const HANDLE hSnapshot = createSnapshot ? createSnapshot(TH32CS_SNAPPROCESS, 0) : INVALID_HANDLE_VALUE;
    if (hSnapshot == INVALID_HANDLE_VALUE)
        return false;
    FindProcess(hSnapshot, processId, lpBuffer, cbBuffer);
    CloseHandle(hSnapshot);
    return lpBuffer[0] != '/';
}

int GetWindowExePath(HWND hWnd, char *lpBuffer, DWORD cbBuffer)
{
    if (cbBuffer < 2)
        return 0;
    lstrcpyA(lpBuffer, "/"); // no path begins so: it stays when nothing is found
    DWORD processId = 0;
    GetWindowThreadProcessId(hWnd, &processId);
    return GetPlatformId() == PLATFORM_NT ? ProcessPathNT(processId, lpBuffer, cbBuffer)
                                          : ProcessPath95(processId, lpBuffer, cbBuffer);
}

// ---- Shortcuts ----------------------------------------------------------------------------------------------------

typedef BOOL(WINAPI *PATHMATCHSPECA)(LPCSTR lpszPath, LPCSTR lpszSpec);

bool MatchesFileSpec(LPCSTR lpszPath, LPCSTR lpszSpec)
{
    // Not on the first systems of either family.
    const HMODULE hShell = LoadLibraryA("shlwapi.dll");
    if (!hShell)
        return false;
    const auto match = FindFunction<PATHMATCHSPECA>(hShell, "PathMatchSpecA");
    const bool matches = match && match(lpszPath, lpszSpec);
    FreeLibrary(hShell);
    return matches;
}

static bool LoadLink(IShellLinkA *link, LPCSTR path)
{
    WCHAR widePath[MAX_PATH];
    IPersistFile *file;
    if (!MultiByteToWideChar(CP_ACP, 0, path, -1, widePath, MAX_PATH) ||
        FAILED(link->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file))))
        return false;
    const HRESULT loaded = file->Load(widePath, STGM_READ);
    file->Release();
    return SUCCEEDED(loaded);
}

// The path that a link holds, whether or not the target is there.
static bool ReadLinkTarget(LPCSTR path, char (&target)[MAX_PATH])
{
    IShellLinkA *link;
    if (FAILED(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                reinterpret_cast<void **>(&link))))
        return false;
    // Without a path GetPath still succeeds, with an empty text.
    const bool read = LoadLink(link, path) && SUCCEEDED(link->GetPath(target, MAX_PATH, nullptr, SLGP_UNCPRIORITY)) &&
                      target[0] != '\0';
    link->Release();
    return read;
}

int ResolveShortcut(LPCSTR lpszLink, char *lpBuffer, DWORD cbBuffer)
{
    char target[MAX_PATH] = "";
    const HRESULT initialised = CoInitialize(nullptr);
    if (ReadLinkTarget(lpszLink, target) && static_cast<DWORD>(lstrlenA(target)) < cbBuffer)
        lstrcpyA(lpBuffer, target);
    // Not for S_FALSE: COM was up on this thread already, and stays so.
    if (initialised == S_OK)
        CoUninitialize();
    return 1;
}

int ResolveIfShortcut(char *lpszPath)
{
    if (!MatchesFileSpec(lpszPath, "*.lnk"))
        return 0;
    ResolveShortcut(lpszPath, lpszPath, MAX_PATH);
    return 1;
}

// ---- Registered programs ------------------------------------------------------------------------------------------

int IsExeFile(LPCSTR lpszPath)
{
    static const char extension[] = {'.', 'e', 'x', 'e'};
    const int length = lstrlenA(lpszPath);
    if (length < static_cast<int>(sizeof extension))
        return 0;
    const char *end = lpszPath + length - sizeof extension;
    for (size_t i = 0; i < sizeof extension; ++i)
        if ((end[i] | 0x20) != extension[i])
            return 0;
    return 1;
}

int FindAppProfile(LPCSTR lpszPath)
{
    for (int slot = 0; slot < APP_PROFILE_COUNT; ++slot)
        if (g_AppProfile[slot].szName[0] != '\0' && _stricmp(g_AppProfile[slot].szName, lpszPath) == 0)
            return slot;
    return -1;
}

int IsRegisteredApp(LPCSTR lpszPath)
{
    return FindAppProfile(lpszPath) != -1;
}
