#include "till/core/catalogue.h"

#include <host/tr.h>

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace {

/// The identifiers of all texts in the product's sources.
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
    ASSERT_EQ(till::installLanguage(QStringLiteral("en")), std::nullopt);
    for (const auto &identifier : identifiers) {
        const auto shown = tr::Tr(identifier, QStringLiteral("<missing>")).toString();
        EXPECT_NE(shown, QStringLiteral("<missing>")) << identifier.toStdString();
        EXPECT_FALSE(shown.isEmpty()) << identifier.toStdString();
    }
    EXPECT_EQ(tr::Tr(QStringLiteral("unknownText"), QStringLiteral("Текст")).toString(),
              QStringLiteral("Текст"));
}

TEST(Catalogue, AnUnknownLanguageIsAnsweredWithThoseThatThereAre)
{
    for (const auto &code : {QStringLiteral("xx"), QStringLiteral("../en"), QStringLiteral("e")}) {
        const auto error = till::installLanguage(code);
        ASSERT_TRUE(error) << code.toStdString();
        EXPECT_THAT(error->toStdString(), testing::HasSubstr("en, ru"));
    }
}

} // namespace
