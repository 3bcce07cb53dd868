// lvserver: a console stand-in for the management server, for trying and testing the plug-in's link to it.
#include "report.h"

#include <cstdio>

int main(int argc, char **argv)
{
    REQUEST request;
    const std::string wrong = ParseCommandLine(&request, std::vector<std::string>(argv + 1, argv + argc));
    if (!wrong.empty()) {
        fprintf(stderr, "lvserver: %s\n", wrong.c_str());
        return EXIT_WRONG_COMMAND_LINE;
    }
    if (request.bHelp) {
        fputs(HelpText().c_str(), stdout);
        return EXIT_DONE;
    }
    const EXCHANGE exchange = RunExchange(&request);
    if (!exchange.error.empty())
        fprintf(stderr, "lvserver: %s\n", exchange.error.c_str());
    PrintReport(&request, &exchange);
    return ExitStatusOf(&exchange);
}
