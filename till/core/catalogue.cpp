#include "till/core/catalogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QTranslator>

namespace till {

namespace {

constexpr auto ownLanguage = QLatin1String("ru");
constexpr auto prefix = QLatin1String("loyalty_");
constexpr auto suffix = QLatin1String(".qm");
constexpr auto directory = QLatin1String(":/translations/");

} // namespace

QStringList availableLanguages()
{
    QStringList languages{ownLanguage};
    for (const auto &file : QDir(directory).entryList({prefix + u'*' + suffix}))
        languages.append(file.sliced(prefix.size()).chopped(suffix.size()));
    languages.sort();
    return languages;
}

std::optional<QString> installLanguage(const QString &code)
{
    if (code.isEmpty() || code == ownLanguage)
        return std::nullopt;
    const auto languages = availableLanguages();
    if (!languages.contains(code))
        return QStringLiteral("language \"%1\": expected one of %2")
            .arg(code, languages.join(QLatin1String(", ")));
    auto *const application = QCoreApplication::instance();
    auto *const translator = new QTranslator(application);
    if (!translator->load(directory + prefix + code + suffix) ||
        !QCoreApplication::installTranslator(translator))
        return QStringLiteral("language \"%1\": the texts cannot be loaded").arg(code);
    return std::nullopt;
}

} // namespace till
