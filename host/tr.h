#pragma once

#include "host/export.h"

#include <QList>
#include <QString>

#include <utility>

namespace tr {

/// A text for people: a message identifier, and the text to show without a translation.
class HOST_EXPORT Tr
{
public:
    /// No text.
    Tr() = default;
    /// A message with that identifier; with an empty one the text is never translated.
    Tr(QString id, QString defaultText)
        : id(std::move(id))
        , defaultText(std::move(defaultText))
    {}

    /// Whether there is neither an identifier nor a text.
    bool isEmpty() const { return id.isEmpty() && defaultText.isEmpty(); }
    const QString &getId() const { return id; }
    const QString &getDefaultText() const { return defaultText; }
    /// The installed translation for the identifier, else the default text.
    QString toString() const;

    bool operator==(const Tr &other) const = default;

private:
    QString id;
    QString defaultText;
};

using TrList = QList<Tr>;

} // namespace tr
