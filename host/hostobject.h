#pragma once

#include "host/export.h"

/// Base of everything that the host offers through virtual operations: deleted through a pointer to
/// it, never copied.
class HOST_EXPORT HostObject
{
public:
    HostObject() = default;
    virtual ~HostObject() = default;
    Q_DISABLE_COPY_MOVE(HostObject)
};
