#include "support.h"

#include <host/abstractdocument.h>
#include <host/simpleformatter.h>

#include <QJsonObject>
#include <QTimeZone>

#include <limits>

namespace {

const QDateTime begun(QDate(2024, 2, 1), QTime(9, 5, 7));

QString expand(const QString &mask, const QVariant &value = {})
{
    const DocumentHeader header{1, 12, 3, 123456, 678, begun};
    const auto receipt = QSharedPointer<AbstractDocument>::create(header);
    const auto item = QSharedPointer<GoodsItem>::create(4, u"Я%(x)"_s, u"имя"_s, 0.1, 3);
    return SimpleFormatter().format(mask, {receipt, item}, 0, {{u"v"_s, value}});
}

} // namespace

TEST(SimpleFormatter, ExpandsAMaskOrNamesWhatItCannotExpand)
{
    const struct
    {
        QString mask;
        QVariant value;
        QString expected;
        bool isNamed = false;
    } cases[] = {
        {u"%(v[s])"_s, u"%(v[s])"_s, u"%(v[s])"_s},
        {u"%(v[s])"_s, QString(), {}},
        {u"%(v[s])"_s, 0.1 + 0.2, u"0.30000000000000004"_s},
        {u"%(v[s])"_s, 1.5e-6, u"0.0000015"_s},
        {u"%(v[s])"_s, qQNaN(), {}, true},
        {u"%(v[s])"_s, QDateTime(), {}, true},
        {u"%(v[s])"_s, begun, u"2024-02-01T09:05:07"_s},
        {u"%(v[s])"_s, QDateTime(begun.date(), begun.time(), QTimeZone(10'800)),
         u"2024-02-01T09:05:07"_s},
        {u"%(v[d])"_s, std::numeric_limits<qint64>::min(), u"-9223372036854775808"_s},
        {u"%(v[d])"_s, std::numeric_limits<quint64>::max(), {}, true},
        {u"%(v[d])"_s, 5.0, u"5"_s},
        {u"%(v[d])"_s, 5.5, {}, true},
        {u"%(v[d])"_s, u"5"_s, {}, true},
        {u"%(v[d])"_s, QVariant::fromValue(QJsonObject()), {}, true},
        {u"%(v[04d])"_s, -7, u"-007"_s},
        {u"%(v[012d])"_s, 7, u"000000000007"_s},
        {u"%(v[0d])"_s, 7, {}, true},
        {u"%(v[0100d])"_s, 7, {}, true},
        {u"%(v[04x])"_s, 7, {}, true},
        {u"%(v[])"_s, 7, {}, true},
        {u"%(v[dd.MM.yyyy hh:mm:ss.zzz])"_s, begun, u"01.02.2024 09:05:07.000"_s},
        {u"%(v[yyMMdd])"_s, QDateTime(QDate(1905, 12, 31), QTime()), u"051231"_s},
        {u"%(v[hhmm])"_s, u"09:05"_s, {}, true},
        {u"%(v[ddT])"_s, begun, {}, true},
        {u"%(v[dddd])"_s, begun, {}, true}, // names of days are refused
        {u"%(v[dd 'MM'])"_s, begun, u"01 '02'"_s},
        {u"%(v[(dd)])"_s, begun, u"(01)"_s},
        {u"%(document.shopCode[04d])%(document.shift[04d])"_s, {}, u"0012123456"_s},
        {u"чек №%(document.num) 100%%"_s, {}, u"чек №678 100%"_s},
        {u"%(position.code[s])"_s, {}, u"Я%(x)"_s},
        {u"%(position.price)%(position.sumb)"_s, {}, u"0.10.3"_s},
        {u"%(nobody.code[s])"_s, {}, {}, true},
        {u"%(document.colour[s])"_s, {}, {}, true},
        {u"%(extra)"_s, {}, {}, true},
        {u"50% %"_s, {}, u"50% %"_s, true},
        {u"%(document.num[s]"_s, {}, u"%(document.num[s]"_s, true},
        {u"%(document.num[s)"_s, {}, u"%(document.num[s)"_s, true},
        {u"%(document.num[s]x)"_s, {}, u"%(document.num[s]x)"_s, true},
        {u"%()%(.num)%(document.)"_s, {}, u"%()%(.num)%(document.)"_s, true},
        {u"%(a%(document.num))"_s, {}, u"%(a678)"_s, true},
    };
    for (const auto &[mask, value, expected, isNamed] : cases) {
        SCOPED_TRACE(mask.toStdString());
        const LogCapture log;
        EXPECT_EQ(expand(mask, value), expected);
        EXPECT_EQ(LogCapture::has(mask), isNamed) << LogCapture::text().toStdString();
    }
}

TEST(SimpleFormatter, TellsMasksOfOneLengthApartHoweverOftenTheyTakeTurns)
{
    for (int round = 0; round < 40; ++round) {
        const auto text = QString::number(round % 20 + 10);
        EXPECT_EQ(expand(text + u"%(document.num)"_s), text + u"678"_s);
    }
}
