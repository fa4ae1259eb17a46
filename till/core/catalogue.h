#pragma once

#include <QString>
#include <QStringList>

#include <tl/expected.hpp>

namespace till {

/// The languages into which all texts are translated.
QStringList availableLanguages();

/// Sets the language of all texts, numbers and dates. An empty code takes the environment's
/// language (LANG), or English when that one is not available.
/// \return Why the language cannot be used.
[[nodiscard]] tl::expected<void, QString> installLanguage(const QString &code);

} // namespace till
