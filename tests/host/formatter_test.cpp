#include "support.h"

#include <host/abstractdocument.h>
#include <host/simpleformatter.h>

#include <QJsonObject>

#include <limits>
#include <vector>

namespace {

QSharedPointer<AbstractDocument> receipt(int shift, const QDateTime &begun)
{
    const DocumentHeader header{1, 12, 3, shift, 678, begun};
    return QSharedPointer<AbstractDocument>::create(header);
}

const auto orderId = QStringLiteral("%(document.shopCode[04d])%(document.cashCode[02d])"
                                    "%(document.shift[04d])%(document.num[07d])"
                                    "%(document.dateTimeBeg[hhmmss])");
const QDateTime begun(QDate(2024, 2, 1), QTime(9, 5, 7));

QString expand(const QString &mask, const QVariantMap &values = {})
{
    const auto item = QSharedPointer<GoodsItem>::create(4, QStringLiteral("Я%(x)"),
                                                        QStringLiteral("имя"), 0.1, 3);
    return SimpleFormatter().format(mask, {receipt(45, begun), item}, 0, values);
}

} // namespace

TEST(SimpleFormatter, MakesTheOrderIdOfTheReceipt)
{
    const LogCapture log;
    EXPECT_EQ(expand(orderId), QStringLiteral("00120300450000678090507"));
    EXPECT_TRUE(LogCapture::text().isEmpty());

    const auto wide = SimpleFormatter().format(orderId, {receipt(123456, {})}, 0, {});
    EXPECT_EQ(wide, QStringLiteral("0012031234560000678"));
    EXPECT_TRUE(LogCapture::has(QStringLiteral("%(document.dateTimeBeg[hhmmss])")));
}

TEST(SimpleFormatter, ExpandsValuesByTheirFormat)
{
    struct Case
    {
        const char *format;
        QVariant value;
        const char *expected; ///< Null for a value that does not fit.
    };
    const std::vector<Case> cases{
        {"s", QStringLiteral("%(v[s])"), "%(v[s])"},
        {"s", 0.1 + 0.2, "0.30000000000000004"},
        {"s", 1.5e-6, "0.0000015"},
        {"s", qQNaN(), nullptr},
        {"s", QDateTime(), nullptr},
        {"s", begun, "2024-02-01T09:05:07"},
        {"s", QDateTime::fromString(QStringLiteral("2024-02-01T09:05:07+03:00"), Qt::ISODate),
         "2024-02-01T09:05:07"},
        {"d", std::numeric_limits<qint64>::min(), "-9223372036854775808"},
        {"d", 5.0, "5"},
        {"d", 5.5, nullptr},
        {"d", QStringLiteral("5"), nullptr},
        {"d", QVariant::fromValue(QJsonObject()), nullptr},
        {"04d", -7, "-007"},
        {"0d", 7, nullptr},
        {"0100d", 7, nullptr},
        {"04x", 7, nullptr},
        {"", 7, nullptr},
        {"d", std::numeric_limits<quint64>::max(), nullptr},
        {"dd.MM.yyyy hh:mm:ss.zzz", begun, "01.02.2024 09:05:07.000"},
        {"yyMMdd", QDateTime(QDate(1905, 12, 31), QTime()), "051231"},
        {"hhmm", QStringLiteral("09:05"), nullptr},
        {"ddT", begun, nullptr},
        {"dddd", begun, nullptr}, // no names of days
        {"dd 'MM'", begun, "01 '02'"},
        {"(dd)", begun, "(01)"},
    };
    for (const auto &[format, value, expected] : cases) {
        SCOPED_TRACE(testing::Message() << '[' << format << "] -> " << expected);
        const LogCapture log;
        const auto mask = QStringLiteral("<%(v[%1])>").arg(QLatin1String(format));
        const auto text = expand(mask, {{QStringLiteral("v"), value}});
        EXPECT_EQ(text, QStringLiteral("<%1>").arg(QString::fromUtf8(expected)));
        EXPECT_EQ(LogCapture::has(mask.mid(1, mask.size() - 2)), expected == nullptr);
    }
}

TEST(SimpleFormatter, KeepsTextAndNamesWhatItCannotExpand)
{
    struct Case
    {
        QString mask;
        QString expected;
        bool warns;
    };
    const std::vector<Case> cases{
        {QStringLiteral("чек №%(document.num) 100%%"), QStringLiteral("чек №678 100%"), false},
        {QStringLiteral("%(position.code[s])"), QStringLiteral("Я%(x)"), false},
        {QStringLiteral("%(position.price)%(position.sumb)"), QStringLiteral("0.10.3"), false},
        {QStringLiteral("a%(nobody.code[s])b"), QStringLiteral("ab"), true},
        {QStringLiteral("a%(document.colour[s])b"), QStringLiteral("ab"), true},
        {QStringLiteral("a%(extra)b"), QStringLiteral("ab"), true},
        {QStringLiteral("50% %"), QStringLiteral("50% %"), true},
        {QStringLiteral("%(document.num[s]"), QStringLiteral("%(document.num[s]"), true},
        {QStringLiteral("%(document.num[s)"), QStringLiteral("%(document.num[s)"), true},
        {QStringLiteral("%(document.num[s]x)"), QStringLiteral("%(document.num[s]x)"), true},
        {QStringLiteral("%()%(.num)%(document.)"), QStringLiteral("%()%(.num)%(document.)"), true},
        {QStringLiteral("%(a%(document.num))"), QStringLiteral("%(a678)"), true},
    };
    for (const auto &[mask, expected, warns] : cases) {
        SCOPED_TRACE(mask.toStdString());
        const LogCapture log;
        EXPECT_EQ(expand(mask), expected);
        EXPECT_EQ(!LogCapture::text().isEmpty(), warns);
    }
}
