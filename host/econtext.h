#pragma once

namespace EContext {

/// The outcome of an action handler.
enum class Result {
    Failed = 0,
    Unhandled = 1,
    Done = 2,
    Skipped = 3, ///< There was nothing to do, or the cashier cancelled.
};

} // namespace EContext
