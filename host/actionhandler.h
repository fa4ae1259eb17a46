#pragma once

#include "host/action.h"
#include "host/econtext.h"

#include <functional>

/// Binds an action of the till to the code that serves it.
struct ActionHandler
{
    /// In which of a till's contexts the handler is asked; 6 is the open receipt. This host has no
    /// other one, and asks every handler.
    int context = 0;
    int actionCode = 0; ///< `control::Action::getType` of the actions it serves.
    std::function<EContext::Result(const control::Action &)> handle;
    bool enabled = false;
};
