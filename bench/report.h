// SPDX-License-Identifier: MIT
#pragma once

#include <functional>

/// How a benchmark measures something of the program against the least that the same work can cost,
/// and what it prints of it: a line of the table that scripts/bench makes.
namespace Bench {

/// Something that takes time. What is done before each of its rounds is not measured.
struct Work
{
    std::function<void()> run;
    std::function<void()> prepare = [] {
    };
};

/// Runs both in turns, so that whatever else the machine does meets both alike, and prints the
/// medians. `scale` is of what: how many rows, tiles or stores. `times` is how often one round does
/// it, and what is printed is for one time.
void compare(const char *what, int scale, const Work &ours, const Work &floor, double goal,
             int rounds = 7, int times = 1);

} // namespace Bench
