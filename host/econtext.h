#pragma once

namespace EContext {

/// What an action handler did.
enum class Result {
    Failed = 0,
    Unhandled = 1,
    Done = 2,
    Skipped = 3, ///< Nothing was to be done, or the cashier cancelled.
};

} // namespace EContext
