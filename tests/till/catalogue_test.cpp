#include "till/core/catalogue.h"

#include <host/tr.h>

#include <QDirIterator>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

/// The identifiers of all texts in the plugin's sources.
QSet<QString> usedIdentifiers()
{
    static const QRegularExpression identifier(
        u"\"((?:lmmindbox|mindbox|dialogChoice|inputTextForm|inputClient)"
        "[A-Z][A-Za-z]*)\""_s);
    QSet<QString> identifiers;
    QDirIterator files(QStringLiteral(PRODUCT_DIR), {u"*.cpp"_s, u"*.h"_s}, QDir::Files,
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
    ASSERT_TRUE(till::installLanguage(u"en"_s));
    for (const auto &identifier : identifiers) {
        const auto shown = tr::Tr(identifier, u"<missing>"_s).toString();
        EXPECT_NE(shown, u"<missing>"_s) << identifier.toStdString();
        EXPECT_FALSE(shown.isEmpty()) << identifier.toStdString();
    }
    EXPECT_FALSE(till::installLanguage(u"../en"_s));
    EXPECT_EQ(tr::Tr(u"unknownText"_s, u"Текст"_s).toString(), u"Текст"_s);
}

} // namespace
