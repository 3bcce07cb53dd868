// Makes shortcut files through the shell.
#include "support/shortcut.h"

#include <gtest/gtest.h>
#include <windows.h>

#include <shlobj.h>

void MakeShortcut(const std::string &link, const std::string &target)
{
    CoInitialize(nullptr);
    IShellLinkA *shellLink = nullptr;
    IPersistFile *file = nullptr;
    ASSERT_EQ(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                               reinterpret_cast<void **>(&shellLink)),
              S_OK);
    if (!target.empty())
        shellLink->SetPath(target.c_str());
    shellLink->SetArguments("/x");
    ASSERT_EQ(shellLink->QueryInterface(IID_IPersistFile, reinterpret_cast<void **>(&file)), S_OK);
    WCHAR wide[MAX_PATH];
    MultiByteToWideChar(CP_ACP, 0, link.c_str(), -1, wide, MAX_PATH);
    ASSERT_EQ(file->Save(wide, TRUE), S_OK);
    file->Release();
    shellLink->Release();
    CoUninitialize();
}
