#pragma once

#include "simulator/answer.h"
#include "simulator/options.h"

#include <QUrlQuery>

#include <optional>

namespace httplib {
struct Request;
} // namespace httplib

namespace simulator {

/// The query items of a request's target, a plus read as a blank as web servers do.
QUrlQuery readQuery(const std::string &target);

/// Checks what surrounds the body of a request: query items and headers, exactly as agreed.
/// Returns the refusal, or nothing when the request may be read on.
std::optional<Answer> checkEnvelope(const httplib::Request &request, const QUrlQuery &query,
                                    const Options &options);

} // namespace simulator
