#pragma once

#include <host/dialogrequests.h>

#include <QString>
#include <QVariant>

#include <tl/expected.hpp>

namespace till {

/// Reads the line typed for a field. An empty line keeps the value shown; "/clear" empties an
/// optional field. A text becomes a `QString` in the mask's shape. A date, typed as "dd.MM.yyyy",
/// becomes a `QDate`. A choice, typed as its number from 1 or its text, becomes its index, an `int`
/// from 0. An empty field other than a text becomes an invalid value. The error says why the line
/// is no answer.
tl::expected<QVariant, QString> readField(const FormField &field, const QString &typed);

/// The question for a field: its label, limits, options and first value.
QString fieldQuestion(const FormField &field);

/// The line that shows a read-only field with its value.
QString fieldStatement(const FormField &field);

/// The text in the mask's shape. The validator must match all of it; either may be empty. The error
/// says why the text does not fit.
tl::expected<QString, QString> shapeText(const QString &text, const QString &inputMask,
                                         const QString &validator);

} // namespace till
