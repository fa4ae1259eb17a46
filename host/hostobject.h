#pragma once

#include "host/export.h"

/// Base of the host's classes with virtual operations. Objects may be deleted through it and are
/// never copied.
class HOST_EXPORT HostObject
{
public:
    HostObject() = default;
    virtual ~HostObject() = default;
    Q_DISABLE_COPY_MOVE(HostObject)
};
