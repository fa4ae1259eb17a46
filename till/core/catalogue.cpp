#include "till/core/catalogue.h"

#include <QCoreApplication>
#include <QDir>
#include <QLocale>
#include <QTranslator>

using namespace Qt::StringLiterals;

namespace till {

namespace {

constexpr auto directory = ":/translations"_L1;

} // namespace

QStringList availableLanguages()
{
    QStringList languages;
    for (const auto &file : QDir(directory).entryList({u"till_*.qm"_s}, QDir::Files, QDir::Name))
        languages.append(file.section(u'_', 1).section(u'.', 0, 0));
    return languages;
}

tl::expected<void, QString> installLanguage(const QString &code)
{
    const auto languages = availableLanguages();
    auto language = code;
    if (code.isEmpty()) {
        const auto asked = QLocale::system().uiLanguages().value(0).section(u'-', 0, 0);
        language = languages.contains(asked) ? asked : u"en"_s;
    }
    if (!languages.contains(language))
        return tl::unexpected(
            u"language \"%1\": expected one of %2"_s.arg(language, languages.join(", "_L1)));
    auto *const program = QCoreApplication::instance();
    qDeleteAll(program->findChildren<QTranslator *>(directory)); // of the language before
    // The sources hold the till's texts in English and the loyalty system's in Russian. These two
    // need no catalogue but for plurals.
    for (const auto texts : {"till"_L1, "loyalty"_L1}) {
        auto *const translator = new QTranslator(program);
        translator->setObjectName(directory);
        if (translator->load(u"%1/%2_%3.qm"_s.arg(directory, texts, language)))
            QCoreApplication::installTranslator(translator);
    }
    // British English puts the day before the month, as Russian does.
    QLocale::setDefault(language == "en"_L1 ? QLocale(QLocale::English, QLocale::UnitedKingdom)
                                            : QLocale(language));
    return {};
}

} // namespace till
