// Batches and medians.
#include "bench/measure.h"

#include <windows.h>

#include <algorithm>
#include <stdexcept>
#include <string>

double NowUs()
{
    LARGE_INTEGER frequency;
    LARGE_INTEGER now;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&now);
    return static_cast<double>(now.QuadPart) * 1e6 / static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> values)
{
    if (values.empty())
        return 0;
    std::sort(values.begin(), values.end());
    const size_t middle = values.size() / 2;
    return values.size() % 2 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

static double BatchUs(int calls, const std::function<void()> &what)
{
    const double start = NowUs();
    for (int call = 0; call < calls; ++call)
        what();
    return (NowUs() - start) / calls;
}

double MedianUs(int rounds, int calls, const std::function<void()> &what)
{
    what();
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round)
        times.push_back(BatchUs(calls, what));
    return Median(times);
}

COMPARISON Summarise(const std::vector<double> &subjects, const std::vector<double> &bases)
{
    std::vector<double> ratios;
    for (size_t round = 0; round < subjects.size(); ++round)
        ratios.push_back(subjects[round] / bases[round]);
    return {Median(subjects), Median(bases), Median(ratios)};
}

COMPARISON Compare(int rounds, int calls, const std::function<void()> &subject, const std::function<void()> &base)
{
    std::vector<double> subjects;
    std::vector<double> bases;
    subject();
    base();
    for (int round = 0; round < rounds; ++round) {
        const bool subjectFirst = round % 2 == 0;
        const double first = BatchUs(calls, subjectFirst ? subject : base);
        const double second = BatchUs(calls, subjectFirst ? base : subject);
        subjects.push_back(subjectFirst ? first : second);
        bases.push_back(subjectFirst ? second : first);
    }
    return Summarise(subjects, bases);
}

void WaitUntil(const char *what, const std::function<bool()> &condition)
{
    constexpr int LOOKS = 2000;
    constexpr DWORD PAUSE_MS = 5;
    for (int look = 0; look < LOOKS; ++look) {
        if (condition())
            return;
        SleepEx(PAUSE_MS, FALSE);
    }
    throw std::runtime_error(std::string("waited in vain for ") + what);
}
