// Time, and what makes a figure of many noisy measurements.
#pragma once

#include <functional>
#include <vector>

// Microseconds since some moment.
double NowUs();

// The middle value; 0 of an empty list.
double Median(std::vector<double> values);

// Calls something `calls` times a round. Result: the median over the rounds of one call's time, in microseconds.
double MedianUs(int rounds, int calls, const std::function<void()> &what);

// Something against what it is measured by, in microseconds a call.
struct COMPARISON {
    double subject;
    double base;
    double ratio; // median of each round's quotient, so that a slow second of the machine weighs on both
};

// From the times of the same rounds.
COMPARISON Summarise(const std::vector<double> &subjects, const std::vector<double> &bases);

// Measures both in turn, one batch of `calls` each a round, and changes which comes first.
COMPARISON Compare(int rounds, int calls, const std::function<void()> &subject, const std::function<void()> &base);

// Waits until something is true, looking every few milliseconds. Throws, with `what` in the text, when that takes more
// than ten seconds.
void WaitUntil(const char *what, const std::function<bool()> &condition);
