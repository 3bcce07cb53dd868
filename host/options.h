// The command line of trayhub.exe.
#pragma once

#include <string>
#include <vector>

#include "host/base/press_text.h"
#include "host/plugin_command.h"

struct OPTIONS {
    bool help;
    bool list;    // print the monitors that Windows has, and end
    int readCode; // print what they have for this VCP code, and end; -1: no such wish
    bool another; // run beside a host that runs already
    bool windows; // show the monitors' windows at the start
    bool noTray;
    bool panel; // open the plug-in's panel at the start
    bool quit;  // end by ourselves after start-up and commands
    std::string plugin;
    bool windowsMonitors;              // drive the monitors that Windows has
    bool fresh;                        // forget what is kept of their capability strings
    std::vector<std::string> monitors; // files and folders of simulated ones; empty: none
    std::string log;                   // empty: none
    std::string report;                // file for a bug report; empty: none
    std::vector<PLUGINCOMMAND> commands;
    std::vector<PRESS> presses; // the monitors and buttons need not exist
};

// The words of this process's own command line behind the program's name.
std::vector<std::string> CommandLineWords();

// Reads the words. Defaults are taken from ProgramFolder(). Returns false and says why in *error.
bool ParseOptions(const std::vector<std::string> &words, OPTIONS *options, std::string *error);

// Whether whoever started the program waits at the console for what it has to say; else it lets go of the console.
bool StaysAtConsole(const OPTIONS &options);

// What --help prints.
std::string HelpText();
