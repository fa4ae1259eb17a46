#pragma once

#include "till/console/console.h"

#include <QByteArray>

#include <sstream>
#include <string>
#include <sys/mman.h>
#include <unistd.h>

/// A console that reads a script to its end and keeps its output.
class ScriptedConsole
{
public:
    explicit ScriptedConsole(const QByteArray &script = {})
        : descriptor(memfd_create("script", 0))
    {
        if (::pwrite(descriptor, script.constData(), script.size(), 0) != script.size())
            std::abort();
    }
    ~ScriptedConsole() { ::close(descriptor); }
    Q_DISABLE_COPY_MOVE(ScriptedConsole)

    /// The output since the last call.
    std::string shown()
    {
        auto text = output.str();
        output.str({});
        return text;
    }

private:
    int descriptor;
    std::ostringstream output;

public:
    till::Console console{descriptor, output};
};
