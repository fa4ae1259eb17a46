#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace till {

/// The languages that all texts are there in.
QStringList availableLanguages();

/// Has the texts of the till and of the loyalty system shown in that language, Russian when it is
/// empty, and numbers and dates written in it.
/// \return Why that cannot be, nothing when it can.
[[nodiscard]] std::optional<QString> installLanguage(const QString &code);

} // namespace till
