#pragma once

#include "host/action.h"
#include "host/econtext.h"

#include <functional>

/// Binds an action of the till to the code that serves it.
struct ActionHandler
{
    int context =
        0; ///< In which of the till's contexts the handler is asked; 6 is the open receipt.
    int actionCode = 0; ///< `control::Action::getType` of the actions it serves.
    std::function<EContext::Result(const control::Action &)> handle;
    bool enabled = false;
};
