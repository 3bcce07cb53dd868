// Keeps capability strings between runs, and remembers a read that the process did not survive.
#include "host/windows_monitors/capability_store.h"

#include <shlobj.h>

#include <algorithm>

#include "host/base/text.h"

constexpr size_t STORE_LIMIT = 1024 * 1024; // bytes of the file

// ---- Files ----------------------------------------------------------------------------------------------------------

std::string DefaultStoreFolder()
{
    wchar_t path[MAX_PATH] = L"";
    if (SHGetFolderPathW(nullptr, CSIDL_LOCAL_APPDATA | CSIDL_FLAG_CREATE, nullptr, SHGFP_TYPE_CURRENT, path) != S_OK)
        return {};
    return Narrow(path) + "\\Lumivane 2";
}

static std::string KeptPath(const CAPABILITYSTORE *store)
{
    return store->folder + "\\capabilities.txt";
}

static std::string MarkerPath(const CAPABILITYSTORE *store, const std::string &key)
{
    return store->folder + "\\reading " + key;
}

// All or nothing: the text is on the disk before the name is changed.
static bool WriteWhole(const std::string &path, const std::string &text)
{
    const std::wstring name = Widen(path), other = Widen(path + Format(".%lu", GetCurrentProcessId()));
    const HANDLE file = CreateFileW(other.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return false;
    DWORD written = 0;
    bool done = WriteFile(file, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) &&
                written == text.size() && FlushFileBuffers(file);
    CloseHandle(file);
    done = done && MoveFileExW(other.c_str(), name.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    if (!done)
        DeleteFileW(other.c_str());
    return done;
}

static std::vector<KEPTCAPABILITIES> ReadKept(const CAPABILITYSTORE *store)
{
    std::vector<KEPTCAPABILITIES> kept;
    std::string text, error;
    if (!store->folder.empty() && ReadWholeFile(KeptPath(store), STORE_LIMIT, &text, &error))
        ReadKeptText(text, &kept);
    return kept;
}

std::string FindKeptCapabilities(CAPABILITYSTORE *store, const std::string &key)
{
    std::lock_guard lock(store->mutex);
    for (const KEPTCAPABILITIES &entry : ReadKept(store))
        if (entry.key == key)
            return entry.text;
    return {};
}

// The file is read anew, since another process may have written it meanwhile.
bool KeepCapabilities(CAPABILITYSTORE *store, const std::string &key, const std::string &text)
{
    if (text.empty() || store->folder.empty())
        return false;
    std::lock_guard lock(store->mutex);
    std::vector<KEPTCAPABILITIES> kept = ReadKept(store);
    kept.erase(std::remove_if(kept.begin(), kept.end(), [&](const auto &entry) { return entry.key == key; }),
               kept.end());
    kept.push_back({key, text});
    if (kept.size() > KEPT_LIMIT)
        kept.erase(kept.begin());
    CreateDirectoryW(Widen(store->folder).c_str(), nullptr);
    return WriteWhole(KeptPath(store), WriteKeptText(kept));
}

// ---- Markers --------------------------------------------------------------------------------------------------------

constexpr size_t MARKER_LIMIT = 1000; // bytes

// "PROCESS START": a process number alone may be another process by now.
static std::string ProcessMark(HANDLE process, DWORD id)
{
    FILETIME created = {}, exited = {}, kernel = {}, user = {};
    if (!GetProcessTimes(process, &created, &exited, &kernel, &user))
        return {};
    return Format("%lu %08lX%08lX", id, created.dwHighDateTime, created.dwLowDateTime);
}

static bool IsProcessRunning(const std::string &mark)
{
    unsigned id = 0;
    const size_t blank = mark.find(' ');
    if (blank == std::string::npos || !ParseNumber(mark.substr(0, blank), 10, 0xFFFFFFFF, &id))
        return false;
    const HANDLE process = OpenProcess(PROCESS_QUERY_INFORMATION | SYNCHRONIZE, FALSE, id);
    if (!process)
        return false;
    const bool runs = ProcessMark(process, id) == mark && WaitForSingleObject(process, 0) == WAIT_TIMEOUT;
    CloseHandle(process);
    return runs;
}

// The reads that nobody lived to end, a line each.
static std::vector<std::string> ReadStrikes(const CAPABILITYSTORE *store, const std::string &key)
{
    std::vector<std::string> strikes;
    std::string text, error;
    if (store->folder.empty() || !ReadWholeFile(MarkerPath(store, key), MARKER_LIMIT, &text, &error))
        return strikes;
    for (const std::string_view line : SplitLines(text))
        if (!line.empty() && !IsProcessRunning(std::string(line)))
            strikes.emplace_back(line);
    return strikes;
}

static bool WriteMarker(const CAPABILITYSTORE *store, const std::string &key, const std::vector<std::string> &lines)
{
    std::string text;
    for (const std::string &line : lines)
        text += line + "\n";
    if (!text.empty())
        return WriteWhole(MarkerPath(store, key), text);
    return DeleteFileW(Widen(MarkerPath(store, key)).c_str()) != 0;
}

bool MarkCapabilityRead(CAPABILITYSTORE *store, const std::string &key)
{
    if (store->folder.empty())
        return false;
    std::lock_guard lock(store->mutex);
    CreateDirectoryW(Widen(store->folder).c_str(), nullptr);
    std::vector<std::string> lines = ReadStrikes(store, key);
    if (lines.size() >= CAPABILITY_STRIKES)
        lines.resize(CAPABILITY_STRIKES - 1);
    lines.push_back(ProcessMark(GetCurrentProcess(), GetCurrentProcessId()));
    return WriteMarker(store, key, lines);
}

void UnmarkCapabilityRead(CAPABILITYSTORE *store, const std::string &key)
{
    if (!store->folder.empty())
        WriteMarker(store, key, {});
}

void TakeBackCapabilityMark(CAPABILITYSTORE *store, const std::string &key)
{
    std::lock_guard lock(store->mutex);
    if (!store->folder.empty())
        WriteMarker(store, key, ReadStrikes(store, key));
}

size_t CapabilityReadStrikes(CAPABILITYSTORE *store, const std::string &key)
{
    return ReadStrikes(store, key).size();
}

void ForgetCapabilities(CAPABILITYSTORE *store)
{
    if (store->folder.empty())
        return;
    std::lock_guard lock(store->mutex);
    DeleteFileW(Widen(KeptPath(store)).c_str());
    WIN32_FIND_DATAW found;
    const HANDLE search = FindFirstFileW(Widen(MarkerPath(store, "*")).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return;
    do {
        DeleteFileW(Widen(store->folder + "\\" + Narrow(found.cFileName)).c_str());
    } while (FindNextFileW(search, &found));
    FindClose(search);
}
