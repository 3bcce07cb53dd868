// Table and JSON.
#include "bench/report.h"

#include <cstdio>

void REPORT::Add(const std::string &figure, double value, const char *unit, double limit)
{
    figures.push_back({figure, value, unit, limit});
}

// Small values, ratios above all, need their decimals; large ones do not.
static int Decimals(double value)
{
    return value < 10 ? 3 : value < 1000 ? 1 : 0;
}

static void PrintFigure(const FIGURE &figure)
{
    printf("  %-58s %10.*f %-3s", figure.name.c_str(), Decimals(figure.value), figure.value, figure.unit);
    if (figure.limit != NO_LIMIT)
        printf(" at most %.5g: %s", figure.limit, figure.value <= figure.limit ? "met" : "MISSED");
    printf("\n");
}

void PrintTable(const REPORT &report)
{
    printf("%s: %s\n", report.name, report.what);
    for (const FIGURE &figure : report.figures)
        PrintFigure(figure);
    if (!report.failure.empty())
        printf("  NOT MEASURED: %s\n", report.failure.c_str());
    printf("\n");
    fflush(stdout);
}

// Texts here are plain ASCII but for the message of a failure.
static std::string Quoted(const std::string &text)
{
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\')
            quoted += '\\';
        quoted += c >= ' ' && c <= '~' ? c : '?';
    }
    return quoted + "\"";
}

static void PrintJsonFigure(const FIGURE &figure)
{
    printf("        {\"name\": %s, \"value\": %.6g, \"unit\": %s", Quoted(figure.name).c_str(), figure.value,
           Quoted(figure.unit).c_str());
    if (figure.limit != NO_LIMIT)
        printf(", \"limit\": %.6g, \"met\": %s", figure.limit, figure.value <= figure.limit ? "true" : "false");
    printf("}");
}

static void PrintJsonReport(const REPORT &report)
{
    printf("    {\n      \"name\": %s,\n      \"what\": %s,\n", Quoted(report.name).c_str(),
           Quoted(report.what).c_str());
    if (!report.failure.empty())
        printf("      \"failure\": %s,\n", Quoted(report.failure).c_str());
    printf("      \"figures\": [");
    for (size_t index = 0; index < report.figures.size(); ++index) {
        printf(index == 0 ? "\n" : ",\n");
        PrintJsonFigure(report.figures[index]);
    }
    printf("\n      ]\n    }");
}

void PrintJson(const std::vector<REPORT> &reports)
{
    printf("{\n  \"benchmarks\": [");
    for (size_t index = 0; index < reports.size(); ++index) {
        printf(index == 0 ? "\n" : ",\n");
        PrintJsonReport(reports[index]);
    }
    printf("\n  ]\n}\n");
}
