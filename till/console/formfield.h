#pragma once

#include <host/dialogrequests.h>

#include <QString>
#include <QVariant>

namespace till {

/// What a line typed for a form's field came to.
struct FieldReading
{
    QVariant value;  ///< Invalid when the field was left empty and has no empty value.
    QString problem; ///< Why the line cannot be the answer; empty when it can.
};

/// Reads what was typed for a field: an empty line keeps the value shown at first, "/clear" leaves
/// an optional field empty. A text comes out as a `QString` in the shape of the field's mask, a
/// date typed as "dd.MM.yyyy" as a `QDate`, a choice typed as the number shown, from 1, or as the
/// option's text as the option's index, an `int` from 0.
FieldReading readField(const FormField &field, const QString &typed);

/// The answer of a field that is shown but cannot be changed.
QVariant fixedValue(const FormField &field);

/// The field as the cashier is asked for it: label, limits, options, first value.
QString fieldQuestion(const FormField &field);

/// The field with its value, for one that cannot be changed.
QString fieldStatement(const FormField &field);

/// Why a text does not fit a mask or a validator, empty when it does; `text` is put into the
/// mask's shape. Either may be empty. The validator must match the whole text.
QString shapeText(QString &text, const QString &inputMask, const QString &validator);

} // namespace till
