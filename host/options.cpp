// The command line of trayhub.exe: one table of options, from which both reading and help are made.
#include "host/options.h"

#include <windows.h>

#include <shellapi.h>

#include "host/base/program_path.h"
#include "host/base/text.h"

std::vector<std::string> CommandLineWords()
{
    std::vector<std::string> words;
    int count = 0;
    if (wchar_t **list = CommandLineToArgvW(GetCommandLineW(), &count)) {
        for (int i = 1; i < count; i++)
            words.push_back(Narrow(list[i]));
        LocalFree(list);
    }
    return words;
}

static bool TakeMonitors(OPTIONS *options, const std::string &value, std::string *error)
{
    options->monitors.clear();
    options->windowsMonitors = false;
    if (value == "none")
        return true;
    options->monitors = SplitAt(value, ',');
    for (const std::string &path : options->monitors) {
        if (path.empty()) {
            *error = "--monitors has an empty name in its list";
            return false;
        }
    }
    return true;
}

static bool TakeCommand(OPTIONS *options, const std::string &value, std::string *error)
{
    PLUGINCOMMAND command;
    if (!ParsePluginCommand(value, &command, error)) {
        *error = "--command " + *error;
        return false;
    }
    options->commands.push_back(command);
    return true;
}

static bool TakePress(OPTIONS *options, const std::string &value, std::string *error)
{
    PRESS press;
    if (!ParsePress(value, &press, error)) {
        *error = "--press " + *error;
        return false;
    }
    options->presses.push_back(press);
    return true;
}

static bool TakePlugin(OPTIONS *options, const std::string &value, std::string *)
{
    options->plugin = value;
    return true;
}

static bool TakeLog(OPTIONS *options, const std::string &value, std::string *)
{
    options->log = value;
    return true;
}

static bool TakeReport(OPTIONS *options, const std::string &value, std::string *)
{
    options->report = value;
    return true;
}

// An option has a flag to set, or a value that a function takes.
static bool TakeRead(OPTIONS *options, const std::string &value, std::string *error)
{
    unsigned code = 0;
    if (!ParseNumber(value, 16, 0xFF, &code)) {
        *error = "--read needs a VCP code, such as 10: '" + value + "' is none";
        return false;
    }
    options->readCode = static_cast<int>(code);
    return true;
}

static const struct OPTIONKIND {
    const char *name;
    const char *value; // what help calls the value; null for a flag
    const char *help;  // lines of help, the first beside the name
    bool OPTIONS::*flag;
    bool (*take)(OPTIONS *options, const std::string &value, std::string *error);
} s_options[] = {
    {"--help", nullptr, "show this text and end", &OPTIONS::help, nullptr},
    {"--plugin", "FILE", "the plug-in to load; lvkernel.dll beside the program if not given", nullptr, TakePlugin},
    {"--monitors", "LIST",
     "simulated monitors instead of those that Windows has: monitor files or folders of them,\n"
     "separated by commas; a folder stands for its *.ini in name order, 'none' for no monitor",
     nullptr, TakeMonitors},
    {"--list", nullptr,
     "print every monitor that Windows has, what it says of itself and its values, and end;\n"
     "status 1 when there is none",
     &OPTIONS::list, nullptr},
    {"--read", "CODE",
     "print what each monitor that Windows has says to one VCP code (two hexadecimal digits), and\n"
     "end; status 1 when none of them says anything",
     nullptr, TakeRead},
    {"--report", "FILE",
     "the same as --list, with the versions of Windows and of this program, into FILE: for a bug\n"
     "report. No names of user or computer and no serial numbers are in it",
     nullptr, TakeReport},
    {"--fresh", nullptr, "read the monitors' capability strings anew; they are kept from run to run otherwise",
     &OPTIONS::fresh, nullptr},
    {"--another", nullptr,
     "run beside a trayhub that runs already, instead of having that one open its panel. It goes\n"
     "without saying with --monitors, --plugin, --command, --press and --quit",
     &OPTIONS::another, nullptr},
    {"--windows", nullptr,
     "show the simulated monitors' windows at the start; the program then ends when the last is closed",
     &OPTIONS::windows, nullptr},
    {"--panel", nullptr, "open the plug-in's panel as soon as it has found its monitors", &OPTIONS::panel, nullptr},
    {"--no-tray", nullptr,
     "no tray icon; the program ends when its last window is closed.\n"
     "A right click on a monitor's window opens the menu, with or without a tray icon",
     &OPTIONS::noTray, nullptr},
    {"--command", "TEXT", "after start-up, give the plug-in a command and print its answer; may be given again",
     nullptr, TakeCommand},
    {"--press", "WHAT",
     "after the commands, press a front-panel button of a simulated monitor as a person would:\n"
     "MONITOR:BUTTON, both counted from 1, or BUTTON as its label, such as 1:MENU. May be given\n"
     "again; each press waits until the plug-in has taken the one before it",
     nullptr, TakePress},
    {"--quit", nullptr,
     "end after start-up, the commands and the presses; status 1 when a command was not answered\n"
     "or a press not taken",
     &OPTIONS::quit, nullptr},
    {"--log", "FILE", "write every packet and every access to a monitor to FILE", nullptr, TakeLog},
};

static const OPTIONKIND *FindOption(const std::string &name)
{
    for (const OPTIONKIND &kind : s_options)
        if (name == kind.name)
            return &kind;
    return nullptr;
}

bool ParseOptions(const std::vector<std::string> &words, OPTIONS *options, std::string *error)
{
    *options = {};
    options->plugin = ProgramFolder() + "\\lvkernel.dll";
    options->windowsMonitors = true;
    options->readCode = -1;
    const std::string shippedPlugin = options->plugin;
    for (size_t i = 0; i < words.size(); i++) {
        const OPTIONKIND *kind = FindOption(words[i]);
        if (!kind) {
            *error = Format("'%s' is no option; --help lists them", words[i].c_str());
            return false;
        }
        if (kind->flag) {
            options->*kind->flag = true;
            continue;
        }
        if (i + 1 == words.size() || words[i + 1].empty()) {
            *error = Format("%s needs a %s behind it", kind->name, kind->value);
            return false;
        }
        if (!kind->take(options, words[++i], error))
            return false;
    }
    // Whoever asks for one of these means the host that is started here.
    options->another = options->another || options->quit || options->plugin != shippedPlugin ||
                       !options->windowsMonitors || !options->commands.empty() || !options->presses.empty();
    if ((options->list || options->readCode >= 0 || !options->report.empty()) && !options->windowsMonitors) {
        *error = "--list, --read and --report are about the monitors that Windows has: leave --monitors out";
        return false;
    }
    return true;
}

bool StaysAtConsole(const OPTIONS &options)
{
    return options.quit || !options.commands.empty() || !options.presses.empty();
}

static std::string OptionHelp(const OPTIONKIND &kind)
{
    std::string text;
    const char *separator = "";
    std::string left = std::string("  ") + kind.name + (kind.value ? std::string(" ") + kind.value : "");
    for (const std::string &line : SplitAt(kind.help, '\n')) {
        text += separator + Format("%-20s %s", left.c_str(), line.c_str());
        separator = "\n";
        left.clear();
    }
    return text + "\n";
}

std::string HelpText()
{
    std::string text = "trayhub - loads the monitor-control plug-in, and stands between it and the monitors\n"
                       "\n"
                       "  trayhub [OPTION ...]\n"
                       "\n";
    for (const OPTIONKIND &kind : s_options)
        text += OptionHelp(kind);
    text += "\nCommands for --command:\n" + DescribePluginCommands();
    text += "\n"
            "A line of the log is: TIME DIRECTION KIND NAME=VALUE ..., with blanks between, for example\n"
            "  2024-05-31T14:07:09.271 host>monitor read monitor=0 code=0x10 feature=brightness value=80 max=100 "
            "result=ok ms=20\n"
            "TIME is local. DIRECTION is plugin>host, host>plugin, host>monitor or host; KIND says what it was\n"
            "(request, notice, reply, command, slot, read, write, ..., event). Texts are in double quotes, with a\n"
            "backslash before quotes and backslashes in them.\n"
            "\n"
            "Status: 0 all went well; 1 something did not work; 2 the command line, the plug-in or a monitor file\n"
            "cannot be used.\n";
    return text;
}
