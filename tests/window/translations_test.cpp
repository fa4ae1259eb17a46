#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

struct Message
{
    QString source;
    QString state;       ///< "unfinished" or "vanished"; empty for a finished translation.
    QString translation; ///< All its plural forms.
};

QList<Message> messagesIn(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&file);
    QList<Message> messages;
    while (!xml.atEnd()) {
        if (xml.readNext() != QXmlStreamReader::StartElement)
            continue;
        const auto name = xml.name();
        if (name == "source"_L1) {
            messages.append({xml.readElementText(), {}, {}});
        } else if (name == "translation"_L1) {
            messages.last().state = xml.attributes().value("type"_L1).toString();
            messages.last().translation =
                xml.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
        }
    }
    return messages;
}

QSet<QString> placesIn(const QString &text)
{
    static const QRegularExpression place(u"%(\\d|n)"_s);
    QSet<QString> places;
    for (auto found = place.globalMatch(text); found.hasNext();)
        places.insert(found.next().captured());
    return places;
}

class Translations : public testing::TestWithParam<std::pair<const char *, const char *>>
{};

TEST_P(Translations, AreThereForEveryTextOfTheSources)
{
    const auto &[language, plurals] = GetParam();
    const auto name = u"till_%1.ts"_s.arg(QLatin1String(language));
    const QTemporaryDir directory;
    const auto copy = directory.filePath(name);
    ASSERT_TRUE(QFile::copy(QStringLiteral(SOURCES "/translations/") + name, copy));
    QStringList arguments{u"-I"_s,
                          QStringLiteral(SOURCES),
                          QStringLiteral(SOURCES "/till"),
                          QStringLiteral(SOURCES "/host"),
                          u"-ts"_s,
                          copy};
    if (*plurals != '\0')
        arguments.prepend(QLatin1String(plurals));
    ASSERT_EQ(QProcess::execute(QStringLiteral(LUPDATE), arguments), 0);
    const auto messages = messagesIn(copy);
    EXPECT_FALSE(messages.isEmpty());
    for (const auto &[source, state, translation] : messages) {
        SCOPED_TRACE(source.toStdString());
        EXPECT_EQ(state.toStdString(), "") << "lupdate finds it so";
        EXPECT_FALSE(translation.isEmpty());
        EXPECT_EQ(placesIn(translation), placesIn(source)) << translation.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(All, Translations,
                         testing::Values(std::pair("ru", ""), std::pair("en", "-pluralonly")),
                         [](const auto &test) { return std::string(test.param.first); });

} // namespace
