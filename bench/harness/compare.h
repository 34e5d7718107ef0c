#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <vector>

namespace ov::bench {

/// What is measured beside others.
struct candidate {
    const char* name;
    std::function<void()> run;      // what is timed
    std::function<void()> prepare;  // before each sample, untimed; may be empty
};

struct conditions {
    double aim = 0;         // how many times its floor the first candidate may cost; 0 asks for nothing
    double quantile = 0.5;  // of the first candidate's samples, against the floor's median
    DWORD pause_ms = 0;     // before each sample: a service that has just worked is still awake
    int rounds = 8;
};

/// Measures the candidates in turn, round by round, so that whatever else the machine does meets them all:
///
///     compare("one exchange", {.aim = 1.5, .pause_ms = 25}, {{"ours", exchange}, {"floor", round_trip}});
///
/// The first is ours, the second its floor; further ones are shown. In a Catch2 test case.
void compare(const char* path, const conditions& under, const std::vector<candidate>& candidates);

/// Ends the program: what fails is fast, and no figure.
void require(bool worked, const char* what);

}  // namespace ov::bench
