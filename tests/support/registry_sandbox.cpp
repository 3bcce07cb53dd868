// Scratch keys in the place of the two predefined ones.
#include "support/registry_sandbox.h"

#include <stdexcept>

static const char s_HostKey[] = "SOFTWARE\\Norvale DEVICE,INC.\\Trayhub";

static std::string ScratchPath(DWORD owner, const char *part)
{
    return "Software\\lvkernel_tests." + std::to_string(owner) + "\\" + part;
}

static void DeleteTree(HKEY root, const std::string &path)
{
    HKEY key;
    if (RegOpenKeyExA(root, path.c_str(), 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS)
        return;
    char name[256];
    while (RegEnumKeyA(key, 0, name, sizeof name) == ERROR_SUCCESS)
        DeleteTree(key, name);
    RegCloseKey(key);
    RegDeleteKeyA(root, path.c_str());
}

static HKEY MakeScratch(DWORD owner, const char *part)
{
    HKEY key;
    // A run that was killed leaves its keys to the next process of its number.
    if (owner == GetCurrentProcessId())
        DeleteTree(HKEY_CURRENT_USER, ScratchPath(owner, part));
    // Not volatile: the product makes lasting keys below it.
    if (RegCreateKeyA(HKEY_CURRENT_USER, ScratchPath(owner, part).c_str(), &key) != ERROR_SUCCESS)
        throw std::runtime_error("no scratch key");
    return key;
}

RegistrySandbox::RegistrySandbox(DWORD owner)
    : m_owner(owner), m_user(MakeScratch(owner, "user")), m_machine(MakeScratch(owner, "machine"))
{
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_machine);
    RegOverridePredefKey(HKEY_CURRENT_USER, m_user);
}

RegistrySandbox::~RegistrySandbox()
{
    RegOverridePredefKey(HKEY_CURRENT_USER, nullptr);
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(m_user);
    RegCloseKey(m_machine);
    if (m_owner == GetCurrentProcessId())
        DeleteTree(HKEY_CURRENT_USER, ScratchPath(m_owner, ""));
}

static std::string HostPath(const char *subKey)
{
    return std::string(s_HostKey) + "\\" + subKey;
}

void PutValue(HKEY root, const char *subKey, const char *name, DWORD type, const void *data, DWORD size)
{
    HKEY key;
    if (RegCreateKeyA(root, HostPath(subKey).c_str(), &key) != ERROR_SUCCESS)
        throw std::runtime_error("no key to put a value into");
    RegSetValueExA(key, name, 0, type, static_cast<const BYTE *>(data), size);
    RegCloseKey(key);
}

void PutDword(HKEY root, const char *subKey, const char *name, DWORD value)
{
    PutValue(root, subKey, name, REG_DWORD, &value, sizeof value);
}

void PutText(HKEY root, const char *subKey, const char *name, const std::string &value)
{
    PutValue(root, subKey, name, REG_SZ, value.c_str(), static_cast<DWORD>(value.size() + 1));
}

std::optional<std::string> BytesAt(HKEY root, const char *path, const char *name)
{
    HKEY key;
    if (RegOpenKeyExA(root, path, 0, KEY_READ, &key) != ERROR_SUCCESS)
        return std::nullopt;
    char data[1024];
    DWORD size = sizeof data;
    const LONG result = RegQueryValueExA(key, name, nullptr, nullptr, reinterpret_cast<BYTE *>(data), &size);
    RegCloseKey(key);
    if (result != ERROR_SUCCESS)
        return std::nullopt;
    return std::string(data, size);
}

std::optional<DWORD> DwordAt(HKEY root, const char *subKey, const char *name)
{
    const auto bytes = BytesAt(root, HostPath(subKey).c_str(), name);
    if (!bytes || bytes->size() != sizeof(DWORD))
        return std::nullopt;
    DWORD value;
    memcpy(&value, bytes->data(), sizeof value);
    return value;
}

std::optional<std::string> TextAt(HKEY root, const char *subKey, const char *name)
{
    const auto bytes = BytesAt(root, HostPath(subKey).c_str(), name);
    return bytes ? std::optional(bytes->substr(0, bytes->find('\0'))) : std::nullopt;
}

static const char s_Launcher[] = "LumvanLauncher";

void PutLauncher(const std::string &name, DWORD value)
{
    PutDword(HKEY_CURRENT_USER, s_Launcher, name.c_str(), value);
}

std::optional<DWORD> LauncherValue(const std::string &name)
{
    return DwordAt(HKEY_CURRENT_USER, s_Launcher, name.c_str());
}
