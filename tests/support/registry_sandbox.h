// The real registry, but on scratch keys: while a sandbox exists, everything below HKEY_CURRENT_USER and
// HKEY_LOCAL_MACHINE starts empty for this process, for the test and the product alike.
#pragma once

#include <windows.h>

#include <optional>
#include <string>

class RegistrySandbox {
public:
    // `owner`: the process whose sandbox this is. Another's is entered as it is, and stays when this one ends.
    explicit RegistrySandbox(DWORD owner = GetCurrentProcessId());
    ~RegistrySandbox();
    RegistrySandbox(const RegistrySandbox &) = delete;
    RegistrySandbox &operator=(const RegistrySandbox &) = delete;

private:
    const DWORD m_owner;
    HKEY m_user = nullptr;
    HKEY m_machine = nullptr;
};

// Values below the host's key, by subkey and name.
void PutDword(HKEY root, const char *subKey, const char *name, DWORD value);
void PutText(HKEY root, const char *subKey, const char *name, const std::string &value);
void PutValue(HKEY root, const char *subKey, const char *name, DWORD type, const void *data, DWORD size);
void PutLauncher(const std::string &name, DWORD value); // among the user's launcher settings
std::optional<DWORD> LauncherValue(const std::string &name);
std::optional<DWORD> DwordAt(HKEY root, const char *subKey, const char *name);
std::optional<std::string> TextAt(HKEY root, const char *subKey, const char *name); // up to the first zero
std::optional<std::string> BytesAt(HKEY root, const char *path, const char *name);  // the path from the root on
