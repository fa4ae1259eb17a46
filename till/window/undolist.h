#pragma once

#include "till/core/saleevent.h"

#include <QList>

#include <optional>

namespace till {

class Sale;

/// The steps on the open receipt that can be taken back, the last one first.
///
/// A step is taken back by further steps of the sale, so the receipt is kept through it like
/// through any other. A position that comes back has a new number.
class UndoList
{
public:
    /// A step to be taken back.
    struct Step
    {
        SaleEvent::Kind kind = SaleEvent::Kind::Opened;
        int number = 0;      ///< Of the position.
        PositionView before; ///< As it was; number 0 when it was not there.
    };

    /// Notes an event, with the position that it changes as it was before.
    void note(const SaleEvent &event, const std::optional<PositionView> &before);
    /// Whether there is a step, and none is being taken back.
    bool canBegin() const { return !steps.isEmpty() && !current; }
    /// Takes the last step off the list. Until `end`, the events noted are those of taking it
    /// back.
    std::optional<Step> begin();
    void end() { current.reset(); }

    /// Takes the step back; on the sale's thread.
    static void takeBack(Sale &sale, const Step &step);

private:
    void renumber(int from, int to);

    QList<Step> steps;
    std::optional<Step> current;
};

} // namespace till
