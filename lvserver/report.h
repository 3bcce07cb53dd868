// Printing what came back.
#pragma once

#include "exchange.h"

enum EXITSTATUS : int {
    EXIT_DONE = 0,
    EXIT_REFUSED = 1,
    EXIT_WRONG_COMMAND_LINE = 2,
    EXIT_NO_ANSWER = 3,
    EXIT_NO_NETWORK = 4,
};

EXITSTATUS ExitStatusOf(const EXCHANGE *lpExchange);

// Prints lines, or one JSON object: UTF-16 to a console, the console's character set to a file or pipe. JSON is ASCII
// everywhere.
void PrintReport(const REQUEST *lpRequest, const EXCHANGE *lpExchange);
