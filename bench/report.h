// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// Measures work of the program against the least possible cost of the same work, and prints a line
/// of the table of scripts/bench.
namespace Bench {

/// Work to be measured. `prepare` is called before each round and is not measured.
struct Work
{
    std::function<void()> run;
    std::function<void()> prepare = [] {
    };
};

/// Runs both alternately, so that the load of the machine affects both equally, and prints the
/// medians. `scale` is the number of rows, tiles or stores. `times` is how often one round does the
/// work; the printed time is for one of them.
void compare(const char *what, int scale, const Work &ours, const Work &floor, double goal,
             int rounds = 7, int times = 1);

} // namespace Bench
