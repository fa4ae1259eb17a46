#pragma once

#include <QDateTime>
#include <QJsonArray>
#include <QJsonObject>
#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>

/// The members of a JSON object that must be there and of the right type.
///
/// The first one that is not is named in the error text, with the way to it and what was expected;
/// its value, and what is read after it, means nothing.
class JsonMembers
{
public:
    /// The error text must outlive the reader, and those it hands out.
    JsonMembers(QJsonObject object, QString &error);

    QString text(QAnyStringView key) const;
    double number(QAnyStringView key) const;
    /// A whole number of 32 bits.
    int integer(QAnyStringView key) const;
    QDate date(QAnyStringView key) const;
    QDateTime dateTime(QAnyStringView key) const;
    QVariant variant(QAnyStringView key) const;
    QJsonArray array(QAnyStringView key) const;
    JsonMembers object(QAnyStringView key) const;
    /// The objects of an array.
    QList<JsonMembers> objects(QAnyStringView key) const;
    /// Whether the member is there and null.
    bool isNull(QAnyStringView key) const;
    QStringList keys() const { return members.keys(); }

    void fail(QAnyStringView key, const QString &expected) const;
    bool good() const { return error->isEmpty(); }

private:
    JsonMembers(QJsonObject object, QString path, QString *error);
    QJsonValue typed(QAnyStringView key, QJsonValue::Type type, const char *expected) const;

    QJsonObject members;
    QString path;
    QString *error;
};
