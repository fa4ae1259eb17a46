#include "simulator/presets.h"

#include <QFile>
#include <QJsonDocument>
#include <QRegularExpression>

namespace simulator {

using namespace Qt::StringLiterals;

QJsonObject ownJson(const QString &name)
{
    QFile file(u":/simulator/%1.json"_s.arg(name));
    const auto object = file.open(QIODevice::ReadOnly)
                            ? QJsonDocument::fromJson(file.readAll()).object()
                            : QJsonObject();
    if (object.isEmpty())
        qFatal("%s.json cannot be read", qPrintable(name));
    return object;
}

QJsonObject merged(QJsonObject object, const QJsonObject &other)
{
    for (auto member = other.begin(); member != other.end(); ++member)
        object.insert(member.key(), *member);
    return object;
}

QJsonObject newCustomer(const QString &mobilePhone)
{
    return merged(ownJson(u"presets"_s)["new"_L1].toObject(), {{"mobilePhone"_L1, mobilePhone}});
}

QString behaviour(const QString &phone)
{
    static const auto behaviours = ownJson(u"presets"_s)["behaviours"_L1].toObject();
    return behaviours[phone].toString();
}

QString normalizedPhone(const QString &phone)
{
    static const QRegularExpression others(u"[^0-9]"_s);
    static const QRegularExpression form(u"^[78]?([0-9]{10})$"_s);
    const auto number = form.match(QString(phone).remove(others));
    return number.hasMatch() ? u'7' + number.captured(1) : QString();
}

} // namespace simulator
