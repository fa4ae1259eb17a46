#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace till {

/// The languages of the loyalty texts: the texts' own, Russian, and those with a catalogue.
QStringList availableLanguages();

/// Has the loyalty texts shown in that language; empty for the texts' own.
/// \return Why that cannot be, nothing when it can.
[[nodiscard]] std::optional<QString> installLanguage(const QString &code);

} // namespace till
