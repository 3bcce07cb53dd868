// The settings that a tour works on: a scratch key in the place of the user's, and files that were not there before.
#include "tour/tour_settings.h"

#include <shlwapi.h>

#include "host/base/program_path.h"
#include "host/base/text.h"

static const wchar_t s_szScratch[] = L"Software\\Trayhub tour";
static const char *const s_files[] = {"profile.ini", "ontimer.ini"}; // that the plug-in keeps beside the program

static HKEY s_hScratch; // stands for HKEY_CURRENT_USER while it is open

static bool Fail(std::string *error, LSTATUS result)
{
    *error = "the settings of the tour cannot be written: " + SystemErrorText(static_cast<DWORD>(result));
    return false;
}

static std::wstring FilePath(const char *file)
{
    return Widen(ProgramFolder() + "\\" + file);
}

// The plug-in would write into these, and it cannot be told to use others.
static bool HaveNoFiles(std::string *error)
{
    for (const char *file : s_files) {
        if (GetFileAttributesW(FilePath(file).c_str()) == INVALID_FILE_ATTRIBUTES)
            continue;
        *error = Format("%s beside the program holds a user's settings, which a tour must not touch; copy the program "
                        "to a folder without it",
                        file);
        return false;
    }
    return true;
}

// What a tour that was ended on the way has left in the registry is removed first.
bool OpenTourSettings(std::string *error)
{
    CloseTourSettings();
    if (!HaveNoFiles(error))
        return false;
    SHDeleteKeyW(HKEY_CURRENT_USER, s_szScratch);
    HKEY key = nullptr;
    LSTATUS result =
        RegCreateKeyExW(HKEY_CURRENT_USER, s_szScratch, 0, nullptr, 0, KEY_ALL_ACCESS, nullptr, &key, nullptr);
    if (result != ERROR_SUCCESS)
        return Fail(error, result);
    result = RegOverridePredefKey(HKEY_CURRENT_USER, key);
    if (result != ERROR_SUCCESS) {
        RegCloseKey(key);
        return Fail(error, result);
    }
    s_hScratch = key;
    return true;
}

void CloseTourSettings()
{
    if (!s_hScratch)
        return;
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(s_hScratch);
    s_hScratch = nullptr;
    SHDeleteKeyW(HKEY_CURRENT_USER, s_szScratch);
    for (const char *file : s_files)
        DeleteFileW(FilePath(file).c_str());
}
