// Where a program without a console says something: the handles it inherited, the console it was started from, or a
// box.
#pragma once

#include <string>

// Finds the outputs: inherited standard handles that are good, else the console of the program that started this one.
// `mayShowBox`: whether a message box may stand in when there is neither (not in a program that nobody watches: it
// would wait for ever). Call once, first of all.
void OpenConsole(bool mayShowBox);

// Whether there is an output: without one, texts go to message boxes or nowhere.
bool HasConsole();

// Lets go of the console: nothing is written there any more, and its end is not this program's. Files and pipes that
// were inherited stay outputs. Harmless without a console.
void LeaveConsole();

// Writes one line of UTF-8 text; a line feed is added. Unbuffered: the line is out when the call returns. Any thread.
void ConsoleLine(const std::string &text);

// The same to the error output, after "trayhub: "; without any output, in a message box unless that is forbidden.
void ConsoleError(const std::string &text);

// Shows a longer text (the help) on the output, or in a message box when there is no output and boxes are allowed.
void ConsoleText(const std::string &text);
