// The test program. Also what the plug-in's code needs of a program that holds it: a module handle for its resources.
#include "kernel/base/platform.h"
#include "kernel/base/plugin_state.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

// A variant of the run that is not what its name says would pass without having tested anything.
static const char *WrongVariant()
{
    char program[MAX_PATH] = "";
    GetModuleFileNameA(nullptr, program, sizeof program);
    const bool win98 = strstr(program, "_win98.exe") != nullptr;
    if (win98 != (GetPlatformId() == PLATFORM_WIN95))
        return "the platform family is not that of the program's name; see tools/wine.reg";
    const char *language = getenv("LUMIVANE_TEST_LANGUAGE");
    if (language && GetSystemDefaultLangID() != atoi(language))
        return "the system's language is not the one that LUMIVANE_TEST_LANGUAGE names; see LC_ALL";
    return nullptr;
}

int main(int argc, char **argv)
{
    g_hInstance = GetModuleHandleA(nullptr);
    if (const char *reason = WrongVariant()) {
        fprintf(stderr, "error: %s\n", reason);
        return 2;
    }
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
