// The settings that a tour works on, on a scratch key in the place of the user's.
#include "host/tour_settings.h"

#include <shlwapi.h>

#include "host/text.h"

static const wchar_t s_szScratch[] = L"Software\\Trayhub tour";
static const wchar_t s_szLauncher[] = L"SOFTWARE\\Norvale DEVICE,INC.\\Trayhub\\LumvanLauncher";

static HKEY s_hScratch; // stands for HKEY_CURRENT_USER while it is open

static bool Fail(std::string *error, LSTATUS result)
{
    *error = "the settings of the tour cannot be written: " + SystemErrorText(static_cast<DWORD>(result));
    return false;
}

// What a tour that was ended on the way has left is removed first.
bool OpenTourSettings(std::string *error)
{
    CloseTourSettings();
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

static bool WriteValue(const std::string &name, DWORD type, const void *data, size_t size, std::string *error)
{
    if (!s_hScratch)
        return Fail(error, ERROR_INVALID_HANDLE);
    HKEY key = nullptr;
    LSTATUS result = RegCreateKeyExW(s_hScratch, s_szLauncher, 0, nullptr, 0, KEY_SET_VALUE, nullptr, &key, nullptr);
    if (result != ERROR_SUCCESS)
        return Fail(error, result);
    result =
        RegSetValueExW(key, Widen(name).c_str(), 0, type, static_cast<const BYTE *>(data), static_cast<DWORD>(size));
    RegCloseKey(key);
    return result == ERROR_SUCCESS || Fail(error, result);
}

bool WriteTourNumber(const std::string &name, DWORD value, std::string *error)
{
    return WriteValue(name, REG_DWORD, &value, sizeof(value), error);
}

bool WriteTourText(const std::string &name, const std::string &value, std::string *error)
{
    const std::wstring wide = Widen(value);
    return WriteValue(name, REG_SZ, wide.c_str(), (wide.size() + 1) * sizeof(wchar_t), error);
}

void CloseTourSettings()
{
    if (!s_hScratch)
        return;
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegCloseKey(s_hScratch);
    s_hScratch = nullptr;
    SHDeleteKeyW(HKEY_CURRENT_USER, s_szScratch);
}
