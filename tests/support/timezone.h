#pragma once

#include <QtGlobal>

#include <QByteArray>

#include <ctime>

/// Sets the process's time zone while it lives.
class TimeZone
{
public:
    explicit TimeZone(const char *name)
    {
        qputenv("TZ", name);
        ::tzset();
    }
    ~TimeZone()
    {
        previous.isNull() ? qunsetenv("TZ") : qputenv("TZ", previous);
        ::tzset();
    }
    Q_DISABLE_COPY_MOVE(TimeZone)

private:
    const QByteArray previous = qgetenv("TZ");
};
