#pragma once

#include <host/dialogrequests.h>

#include <QVariant>
#include <QWidget>

class QButtonGroup;
class QHBoxLayout;
class QLabel;

namespace till {

class LineField;

/// A form's field: its label, what is typed or chosen in it, and beside that what is wrong with it.
class FieldEditor : public QWidget
{
    Q_OBJECT
public:
    /// An editor of the field's kind. One that is not editable shows its value.
    static FieldEditor *create(const FormField &field, QWidget *parent);

    const QString &key() const { return field.key; }
    bool isDigitsOnly() const { return field.keyboardDigits; }
    bool isEditable() const { return field.editable; }
    /// The answer; invalid when the field is left empty and has no empty value.
    virtual QVariant value() const = 0;
    /// Why the answer cannot be taken; empty when it can.
    QString problem() const;
    /// Has the problem stand out, also in a field that was not touched yet.
    void reveal();

signals:
    void changed();

protected:
    FieldEditor(FormField field, QWidget *parent);

    virtual bool isBlank() const = 0;
    /// Why what was entered cannot be taken.
    virtual QString enteredProblem() const { return {}; }
    /// Shows the widget as what the cashier enters something in.
    void addInput(QWidget *input);
    /// Has the cashier read what is wrong until the field changes.
    void complain(const QString &problem, bool standsOut = true);
    void noteChange();

    const FormField field;
    QHBoxLayout *row; ///< Of the input.

private:
    QLabel *label;
    QLabel *note;
    bool isRevealed = false;
};

/// A text, in the shape of the field's mask.
class TextEditor : public FieldEditor
{
    Q_OBJECT
public:
    /// `mismatch` says that a text does not match the validator.
    TextEditor(const FormField &field, QWidget *parent, const QString &mismatch = {});

    QVariant value() const override;
    LineField &input() const { return *line; }

protected:
    bool isBlank() const override;
    QString enteredProblem() const override;

    LineField *line;

private:
    QString mismatch;
};

/// A date, typed or picked from a calendar.
class DateEditor : public TextEditor
{
    Q_OBJECT
public:
    DateEditor(const FormField &field, QWidget *parent);

    QVariant value() const override;

protected:
    QString enteredProblem() const override;

private:
    QDate date() const;
    void pick();
};

/// One of several options, each a button.
class ChoiceEditor : public FieldEditor
{
    Q_OBJECT
public:
    ChoiceEditor(const FormField &field, QWidget *parent);

    QVariant value() const override;

protected:
    bool isBlank() const override;

private:
    QButtonGroup *options;
};

} // namespace till
