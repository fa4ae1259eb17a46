#include "fuzz/fuzzing.h"

#include <host/abstractdocument.h>
#include <host/simpleformatter.h>

#include <QTime>

#include <limits>

namespace {

QList<QSharedPointer<FormatterSource>> makeSources()
{
    const QDateTime begun(QDate(2024, 2, 29), QTime(23, 59, 59, 7));
    const auto document = QSharedPointer<AbstractDocument>::create(
        DocumentHeader{1, 7, 12, -3, std::numeric_limits<int>::max(), begun});
    return {document, document->addGoodsItem(QStringLiteral("%(x)"), QString(), 0.1, 1e300)};
}

const QVariantMap extraValues = {
    {QStringLiteral("a"), std::numeric_limits<qint64>::min()},
    {QStringLiteral("b"), std::numeric_limits<quint64>::max()},
    {QStringLiteral("c"), std::numeric_limits<double>::quiet_NaN()},
    {QStringLiteral("d"), -1e-300},
    {QStringLiteral("e"), QDate(-4713, 1, 1)},
    {QStringLiteral("f"), QTime()},
    {QStringLiteral("g"), QByteArray("\xff")},
    {QStringLiteral("h"), QStringList({QStringLiteral("1"), QStringLiteral("2")})},
    {QStringLiteral("i"), QDateTime(QDate(99999, 12, 31), QTime(0, 0))},
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const auto sources = makeSources();
    const SimpleFormatter formatter;
    const auto mask = QString::fromUtf8(bytesOf({data, size}));
    const auto expanded = formatter.format(mask, sources, 0, extraValues);
    require(expanded == formatter.format(mask, sources, 1, extraValues));

    // With its percent signs doubled any text stands for itself.
    auto doubled = mask;
    doubled.replace(QLatin1String("%"), QLatin1String("%%"));
    require(formatter.format(doubled, sources, 0, extraValues) == mask);
    return 0;
}
