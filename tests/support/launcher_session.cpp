// Launcher pages and values.
#include "support/launcher_session.h"

#include "settings/registry.h"

void LauncherPagesTest::OpenPanel(int monitor)
{
    ASSERT_TRUE(Open());
    HoldTimer(TIMER_BUTTON_POLL);
    ChooseMonitor(1 - monitor);
    ChooseMonitor(monitor);
}

HWND LauncherPagesTest::OpenPage(TREEITEM item)
{
    Choose(TREE_ROOT);
    Choose(item);
    host.TakeLog();
    TakeRecordedCalls();
    return Page(item);
}

void LauncherPagesTest::Put(const std::string &name, DWORD value)
{
    PutDword(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name.c_str(), value);
}

void LauncherPagesTest::Put(const std::string &name, const std::string &text)
{
    PutText(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name.c_str(), text);
}

StoredNumber LauncherPagesTest::Number(const std::string &name)
{
    return DwordAt(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name.c_str());
}

StoredText LauncherPagesTest::Text(const std::string &name)
{
    return TextAt(HKEY_CURRENT_USER, SUBKEY_LAUNCHER, name.c_str());
}

void LauncherPagesTest::Remove(const std::string &name)
{
    const REGENTRY entry = {SUBKEY_LAUNCHER, name.c_str(), 0, nullptr, 0};
    DeleteSetting(&entry);
}
