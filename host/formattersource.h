#pragma once

#include "host/export.h"
#include "host/hostobject.h"

#include <QStringView>
#include <QVariant>

/// Something whose fields a mask can name, as in "%(position.code[s])".
class HOST_EXPORT FormatterSource : public HostObject
{
public:
    /// The part of the placeholder before the point.
    virtual QLatin1String sourceName() const = 0;
    /// The value of a field; invalid for an unknown one.
    virtual QVariant field(QStringView name) const = 0;

protected:
    /// The record's member with this name, found by `visitMembers`; invalid when there is none.
    template<typename Record>
    static QVariant memberOf(const Record &record, QStringView name)
    {
        QVariant found;
        Record::visitMembers(record, [&](QLatin1String member, const auto &value) {
            if (member == name)
                found = value;
        });
        return found;
    }
};
