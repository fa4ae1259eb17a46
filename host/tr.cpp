#include "host/tr.h"

#include <QCoreApplication>

#include <utility>

namespace tr {

Tr::Tr(QString id, QString defaultText)
    : id(std::move(id))
    , defaultText(std::move(defaultText))
{}

QString Tr::toString() const
{
    if (id.isEmpty())
        return defaultText;
    const auto translated = qtTrId(id.toUtf8().constData());
    return translated == id ? defaultText : translated;
}

} // namespace tr
