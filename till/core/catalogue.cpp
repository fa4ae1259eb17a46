#include "till/core/catalogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>

namespace till {

namespace {

constexpr auto usualLanguage = QLatin1String("ru");
/// The till's texts are English in the sources, the loyalty system's Russian; a catalogue that
/// would repeat them is not there, or has the plurals alone.
constexpr auto tillTexts = QLatin1String("till_");
constexpr auto loyaltyTexts = QLatin1String("loyalty_");
constexpr auto suffix = QLatin1String(".qm");
constexpr auto directory = QLatin1String(":/translations/");

bool install(const QString &file)
{
    auto *const translator = new QTranslator(QCoreApplication::instance());
    translator->setObjectName(directory);
    return translator->load(file) && QCoreApplication::installTranslator(translator);
}

/// English dates as the day, the month and the year, like the Russian ones.
QLocale localeOf(const QString &language)
{
    return language == QLatin1String("en") ? QLocale(QLocale::English, QLocale::UnitedKingdom)
                                           : QLocale(language);
}

} // namespace

QStringList availableLanguages()
{
    QStringList languages;
    for (const auto &file : QDir(directory).entryList({tillTexts + u'*' + suffix}))
        languages.append(file.sliced(tillTexts.size()).chopped(suffix.size()));
    languages.sort();
    return languages;
}

std::optional<QString> installLanguage(const QString &code)
{
    const auto language = code.isEmpty() ? QString(usualLanguage) : code;
    const auto languages = availableLanguages();
    if (!languages.contains(language))
        return QStringLiteral("language \"%1\": expected one of %2")
            .arg(language, languages.join(QLatin1String(", ")));
    // What was installed for another language.
    qDeleteAll(QCoreApplication::instance()->findChildren<QTranslator *>(directory));
    for (const auto &texts : {tillTexts, loyaltyTexts}) {
        const auto file = directory + texts + language + suffix;
        if (QFile::exists(file) && !install(file))
            return QStringLiteral("language \"%1\": the texts cannot be loaded").arg(language);
    }
    QLocale::setDefault(localeOf(language));
    return std::nullopt;
}

} // namespace till
