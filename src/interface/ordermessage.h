#pragma once

#include <QLatin1String>

/// The words of an order message in the till's queue: `{"method": "create" | "change", "payload":
/// {...}}`.
namespace lmmindbox::ordermessage {

inline constexpr QLatin1String queue("lmmindbox"); ///< Name of the queue.
inline constexpr QLatin1String method("method");
inline constexpr QLatin1String payload("payload");
inline constexpr QLatin1String create("create"); ///< Method: the payload creates an order.
inline constexpr QLatin1String change("change"); ///< Method: the payload changes its status.

} // namespace lmmindbox::ordermessage
