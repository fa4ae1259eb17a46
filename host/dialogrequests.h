#pragma once

#include "host/tr.h"

#include <QDate>
#include <QList>
#include <QSet>
#include <QString>

/// A progress message.
struct ProgressRequest
{
    tr::Tr title;
    tr::Tr message;
    bool cancellable = false;
    bool modal = false;
    bool showsTime = false;
};

/// An input of one line of text.
struct InputTextRequest
{
    tr::Tr title;
    tr::Tr message;
    QString initialText;
    qint8 inputKind = 0;
    qint8 keyboard = 0;
    tr::Tr scanError;
    QString validator; ///< Regular expression the whole text must match; empty for any text.
    QString inputMask; ///< In Qt's input-mask syntax; empty for none.
    bool scanAllowed = false;
    int inputSources = 0xFFF; ///< Bit set of the allowed input devices.
    qint8 hidden = 0;
    qint8 selectsInitialText = 1;
    qint8 upperCase = 0;
    qint8 virtualKeyboard = 1;
    qint8 numeric = 0;
    qint8 multiLine = 0;
    qint8 cancellable = 1;
    qint8 closesOnScan = 0;
    tr::Tr okText;
    tr::Tr cancelText;
    int timeout = 0;          ///< Milliseconds, 0 for none.
    qint16 maximumLength = 0; ///< Characters, 0 for any.
    QString inputId;
    QSet<int> acceptedKeys;
    QString hint;
};

/// The kind of a form's field.
enum class FormFieldKind {
    None = 0,
    Choice = 2, ///< Answered by the index of the option.
    Text = 10,
    Date = 14, ///< Answered by a `QDate`.
};

/// One field of a form.
struct FormField
{
    QString key; ///< The key of the field's answer.
    FormFieldKind kind = FormFieldKind::None;
    tr::Tr label;
    QString validator; ///< Regular expression the whole text must match; empty for any text.
    QString inputMask; ///< In Qt's input-mask syntax; empty for none.
    tr::TrList options;
    QString value; ///< The initial value: a text, "dd.MM.yyyy", or an option's index.
    QString hint;
    QDate minDate;
    QDate maxDate;
    bool mandatory = true;      ///< Whether an answer is required.
    bool editable = true;       ///< Whether the value may be changed.
    bool keyboardDigits = true; ///< Whether the field is entered on the digit keys alone.
    int order = -1; ///< Neighbours of the same number stand side by side; -1 stands alone.
};

/// A form of several fields.
struct FormRequest
{
    tr::Tr title;
    tr::Tr subtitle;
    bool cancellable = true;
    bool compact = false;
    bool validates = false; ///< Whether the answers are checked before the form closes.
    QList<FormField> fields;
    QString focusedField;
    bool readOnly = false;
    int columns = 1;
    bool showsOk = true;
    bool showsCancel = true;
    tr::Tr okText;
};
