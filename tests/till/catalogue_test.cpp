#include "till/core/catalogue.h"

#include <host/tr.h>

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace {

/// The identifiers of all texts in the plugin's sources.
QSet<QString> usedIdentifiers()
{
    static const QRegularExpression identifier(
        QStringLiteral("\"((?:lmmindbox|mindbox|dialogChoice|inputTextForm|inputClient)"
                       "[A-Z][A-Za-z]*)\""));
    QSet<QString> identifiers;
    QDirIterator files(QStringLiteral(PRODUCT_DIR),
                       {QStringLiteral("*.cpp"), QStringLiteral("*.h")}, QDir::Files,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        auto found = identifier.globalMatch(QString::fromUtf8(file.readAll()));
        while (found.hasNext())
            identifiers.insert(found.next().captured(1));
    }
    return identifiers;
}

TEST(Catalogue, EveryTextOfTheProductIsThereInEnglish)
{
    const auto identifiers = usedIdentifiers();
    ASSERT_GE(identifiers.size(), 25);
    ASSERT_TRUE(till::installLanguage(QStringLiteral("en")));
    for (const auto &identifier : identifiers) {
        const auto shown = tr::Tr(identifier, QStringLiteral("<missing>")).toString();
        EXPECT_NE(shown, QStringLiteral("<missing>")) << identifier.toStdString();
        EXPECT_FALSE(shown.isEmpty()) << identifier.toStdString();
    }
    EXPECT_FALSE(till::installLanguage(QStringLiteral("../en")));
    EXPECT_EQ(tr::Tr(QStringLiteral("unknownText"), QStringLiteral("Текст")).toString(),
              QStringLiteral("Текст"));
}

} // namespace
