#pragma once

#include "simulator/answer.h"
#include "simulator/options.h"
#include "simulator/receivedrequest.h"

#include <optional>

namespace simulator {

/// Checks what surrounds the body of a request: query items and headers, exactly as agreed.
/// Returns the refusal, or nothing when the request may be read on.
std::optional<Answer> checkEnvelope(const ReceivedRequest &request, const Options &options);

} // namespace simulator
