// What a benchmark found, and its two forms: a table for people, JSON for programs.
#pragma once

#include <string>
#include <vector>

struct FIGURE {
    std::string name;
    double value;
    const char *unit; // "us", "ms", "x" (a ratio), "%", "KB", "/s"
    double limit;     // the value is to be at most this; NO_LIMIT when nothing is asked of it
};
constexpr double NO_LIMIT = 0;

// The outcome of one benchmark.
struct REPORT {
    const char *name;
    const char *what;
    std::vector<FIGURE> figures;
    std::string failure; // why it could not be measured; empty when it was

    void Add(const std::string &figure, double value, const char *unit, double limit = NO_LIMIT);
};

// Prints one benchmark's part of the table, with a word beside each figure that has a limit.
void PrintTable(const REPORT &report);

// Prints all of them as one JSON object.
void PrintJson(const std::vector<REPORT> &reports);
