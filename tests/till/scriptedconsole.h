#pragma once

#include "till/console/console.h"

#include <QByteArray>

#include <cstdio>
#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

/// What the console reads: these bytes, then the end of the input.
class ScriptedDescriptor
{
public:
    explicit ScriptedDescriptor(const QByteArray &bytes)
        : number(memfd_create("script", 0))
    {
        if (::pwrite(number, bytes.constData(), bytes.size(), 0) != bytes.size())
            std::abort();
    }
    ~ScriptedDescriptor() { ::close(number); }
    Q_DISABLE_COPY_MOVE(ScriptedDescriptor)

    const int number;
};

/// A console that reads a script and keeps what it shows.
class ScriptedConsole
{
public:
    explicit ScriptedConsole(const QByteArray &script = {})
        : descriptor(script)
    {}

    /// All that was shown since the last call.
    std::string shown()
    {
        auto text = output.str();
        output.str({});
        return text;
    }

private:
    ScriptedDescriptor descriptor;
    std::ostringstream output;

public:
    till::Console console{descriptor.number, output};
};
