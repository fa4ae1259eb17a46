#pragma once

#include <host/tr.h>

namespace lmmindbox {

/// The outcome of a verification.
struct VerifyResult
{
    int code = 0;   ///< 0 when it passed.
    tr::Tr message; ///< The reason of a failure; empty when only the code is known.

    bool operator==(const VerifyResult &other) const = default;
};

} // namespace lmmindbox
