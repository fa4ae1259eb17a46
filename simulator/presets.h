#pragma once

#include <QJsonObject>
#include <QString>

namespace simulator {

/// One of the program's embedded JSON documents.
QJsonObject ownJson(const QString &name);
/// The object with the members of the other one added or replaced.
QJsonObject merged(QJsonObject object, const QJsonObject &other);

/// The special behaviour for this phone; empty when there is none.
QString behaviour(const QString &phone);

/// A registered customer without data, in the form of the answers.
QJsonObject newCustomer(const QString &mobilePhone);

/// The phone in the service's normal form: eleven digits that begin with 7. Ten digits get the 7, a
/// leading 8 becomes 7, other characters are dropped. Empty when the result is no such number.
QString normalizedPhone(const QString &phone);

} // namespace simulator
