// trayhub_tour.exe: the host with the tour in its user's place.
#include <windows.h>

#include <thread>

#include "host/base/console.h"
#include "tour/tour.h"
#include "tour/tour_settings.h"

static std::string s_folder; // of the pictures
static std::thread s_thread; // goes through the steps

static const char s_szHelp[] =
    "trayhub_tour FOLDER [OPTION ...]: shows by itself what trayhub does, then ends. The options are those of\n"
    "trayhub. Whoever starts it takes the pictures and gives the input that it asks for, a line each:\n"
    "  PICTURE NAME [WxH+LEFT+TOP]   of the screen or a part, with the mouse out of the way and\n"
    "                                everything painted, to FOLDER\\NAME.png\n"
    "  MOVE X Y, CLICK X Y, RIGHT-CLICK X Y, DRAG X Y X Y, KEY NAME ..., TYPE TEXT\n"
    "                                mouse and keyboard; FOLDER\\done tells that it was given\n"
    "Status 0 at its end, 1 when a step fails, 2 when the command line, the plug-in or a monitor file cannot be "
    "used.\n";

static void BeginTour(HOSTAPP *app)
{
    s_thread = std::thread(RunTour, app, s_folder);
}

// The screen may have no notification area, and another host may run beside it. The clock is set in the plug-in that
// is loaded first, so it is not to be loaded again for other monitors.
static int RunHostOnTour(HOSTAPP *app)
{
    app->options.another = app->options.noTray = true;
    app->reload.keepsMonitors = true;
    app->prepare = PrepareTour;
    app->begin = BeginTour;
    const int status = RunHost(app);
    if (s_thread.joinable())
        s_thread.join();
    CloseTourSettings();
    return status;
}

int WINAPI WinMain(HINSTANCE hInstance, HINSTANCE, LPSTR, int)
{
    std::vector<std::string> words = CommandLineWords();
    OpenConsole(false);
    if (words.empty() || words[0] == "--help") {
        ConsoleText(s_szHelp);
        return words.empty() ? 2 : 0;
    }
    s_folder = words[0];
    words.erase(words.begin());

    HOSTAPP app = {};
    std::string error;
    app.hInstance = hInstance;
    if (!ParseOptions(words, &app.options, &error)) {
        ConsoleError(error);
        return 2;
    }
    const int status = RunHostOnTour(&app);
    if (app.isDriverStuck)
        TerminateProcess(GetCurrentProcess(), static_cast<UINT>(status));
    return status;
}
