#pragma once

#include <QString>

#include <vector>

namespace day {

class Day;

/// Something that happens at the till, as often as its weight says.
struct Action
{
    const char *name;
    int weight;
    void (*act)(Day &day);
};
extern const std::vector<Action> actions;

struct Step
{
    size_t action; ///< In `actions`.
    uint64_t seed; ///< Of the choices in it.
};

/// A day at the till: its process again and again, the disk, the service and the clock. With
/// `isTold` every step and what the cashier was told is printed.
/// \return What went wrong, with the number of the step; empty for nothing.
QString findingOf(const std::vector<Step> &steps, bool isTold = false);

} // namespace day
