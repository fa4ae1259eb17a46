#pragma once

#include <host/tr.h>

namespace lmmindbox {

/// How a verification ended.
struct VerifyResult
{
    int code = 0;   ///< 0 when it passed.
    tr::Tr message; ///< Why it did not pass; empty when nothing is known beyond the code.

    bool operator==(const VerifyResult &other) const = default;
};

} // namespace lmmindbox
