// Paths of programs: by window, by shortcut, and as they are registered.
#include "profiles/app_path.h"

#include "kernel/base/platform.h"
#include "profiles/profile_store.h"
#include "support/front_programs.h"
#include "support/plugin_session.h"
#include "support/shortcut.h"

#include <objbase.h>
#include <shlobj.h>

namespace {

class AppPathTest : public HostTest {
protected:
    AppPathTest() { LoadPsapi(); }
    ~AppPathTest() override { UnloadPsapi(); }
};

std::string PathOf(HWND window, DWORD size = MAX_PATH)
{
    char path[MAX_PATH] = "untouched";
    return GetWindowExePath(window, path, size) ? path : "-";
}

bool IsComUp()
{
    IUnknown *object = nullptr;
    const HRESULT made = CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IUnknown,
                                          reinterpret_cast<void **>(&object));
    if (object)
        object->Release();
    return made != CO_E_NOTINITIALIZED;
}

std::string Resolved(const std::string &path, int expected)
{
    char buffer[MAX_PATH];
    strcpy(buffer, path.c_str());
    EXPECT_EQ(ResolveIfShortcut(buffer), expected) << path;
    return buffer;
}

} // namespace

TEST_F(AppPathTest, ProgramOfAWindow)
{
    FrontProgram program("front_one.exe");
    EXPECT_EQ(_stricmp(PathOf(program.Window()).c_str(), program.KnownPath().c_str()), 0) << PathOf(program.Window());
    EXPECT_EQ(PathOf(program.Window(), 1), "-");
    EXPECT_EQ(PathOf(program.Window(), 0), "-");
    EXPECT_LT(PathOf(program.Window(), 5).size(), 5u) << "cut to its buffer";
    EXPECT_EQ(PathOf(nullptr), "-");
    EXPECT_EQ(PathOf(reinterpret_cast<HWND>(0x12345678)), "-");
    ExpectNothingLeft(20, [&] { PathOf(program.Window()); });
    UnloadPsapi();
    EXPECT_EQ(PathOf(program.Window()) == "-", GetPlatformId() == PLATFORM_NT);
}

TEST_F(AppPathTest, Shortcuts)
{
    const std::string link = IniFolder::Path(Ansi("表 ショート.LNK")), target = "C:\\windows\\notepad.exe";
    MakeShortcut(link, target);
    EXPECT_EQ(_stricmp(Resolved(link, 1).c_str(), target.c_str()), 0) << Resolved(link, 1);
    char buffer[MAX_PATH] = "as it was";
    EXPECT_EQ(ResolveShortcut(link.c_str(), buffer, static_cast<DWORD>(target.size())), 1);
    EXPECT_STREQ(buffer, "as it was") << "no room for its zero";
    EXPECT_EQ(ResolveShortcut(link.c_str(), buffer, static_cast<DWORD>(target.size() + 1)), 1);
    EXPECT_EQ(_stricmp(buffer, target.c_str()), 0);
    EXPECT_FALSE(IsComUp()) << "left as it was";
    CoInitialize(nullptr); // as a host that uses COM itself
    EXPECT_EQ(_stricmp(Resolved(link, 1).c_str(), target.c_str()), 0);
    EXPECT_TRUE(IsComUp()) << "left as it was";
    while (IsComUp())
        CoUninitialize();

    // A missing target is still the target. Anything that leads nowhere stays the path of a shortcut.
    MakeShortcut(link, "C:\\no\\such.exe");
    EXPECT_EQ(_stricmp(Resolved(link, 1).c_str(), "C:\\no\\such.exe"), 0) << Resolved(link, 1);
    MakeShortcut(link, "");
    EXPECT_EQ(Resolved(link, 1), link);
    for (const std::string &bytes :
         {std::string(), std::string("no shortcut at all"), ReadFileBytes(link).substr(0, 90)}) {
        WriteFileBytes(link, bytes);
        EXPECT_EQ(Resolved(link, 1), link);
    }
    DeleteFileA(link.c_str());
    EXPECT_EQ(Resolved(link, 1), link);
    for (const char *path : {"C:\\a.lnk.exe", "C:\\lnk", "", "C:\\a.ln"})
        EXPECT_EQ(Resolved(path, 0), path);
    InjectFault(Fault::Library);
    EXPECT_EQ(Resolved(link, 0), link) << "a system without the library for patterns";
}

TEST_F(AppPathTest, ExecutablesAndRegisteredOnes)
{
    const struct {
        const char *path;
        int isExe, isRegistered;
    } cases[] = {
        {"C:\\Tools\\A.EXE", 1, 1},
        {"c:\\tools\\a.exe", 1, 1},
        {"C:\\Tools\\a.exe ", 0, 0},
        {"C:\\Tools\\a.eXe2", 0, 0},
        {"C:\\Tools\\b.exe", 1, 0},
        {"C:\\Tools\\a.com", 0, 0},
        {".exe", 1, 0},
        {"exe", 0, 0},
        {"C:\\last.exe", 1, 1},
        {"C:\\Tools\\aexe", 0, 0},
        {"", 0, 0},
    };
    strcpy(g_AppProfile[2].szName, "C:\\Tools\\a.exe");
    strcpy(g_AppProfile[5].szName, "C:\\TOOLS\\A.EXE");
    strcpy(g_AppProfile[239].szName, "C:\\LAST.exe");
    for (const auto &c : cases) {
        EXPECT_EQ(IsExeFile(c.path), c.isExe) << c.path;
        EXPECT_EQ(IsRegisteredApp(c.path), c.isRegistered) << c.path;
    }
    EXPECT_EQ(FindAppProfile("c:\\tools\\a.exe"), 2) << "the first one";
}
