#pragma once

#include "host/action.h"
#include "host/econtext.h"

#include <functional>

/// Binds an action of the till to the code that handles it.
struct ActionHandler
{
    /// The till's context in which the handler runs; 6 is the open receipt. This host has only that
    /// one and asks every handler.
    int context = 0;
    int actionCode = 0; ///< The `control::Action::getType` that it handles.
    std::function<EContext::Result(const control::Action &)> handle;
    bool enabled = false;
};
