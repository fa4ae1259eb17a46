#include "host/tr.h"

#include <QCoreApplication>

namespace tr {

QString Tr::toString() const
{
    if (id.isEmpty())
        return defaultText;
    const auto translated = qtTrId(id.toUtf8().constData());
    return translated == id ? defaultText : translated;
}

} // namespace tr
