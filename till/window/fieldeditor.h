#pragma once

#include <host/dialogrequests.h>

#include <QVariant>
#include <QWidget>

class QButtonGroup;
class QLabel;
class QLineEdit;

namespace till {

/// A form's field: its label, its input, and a note about what is wrong with the input.
///
/// A text or a date is typed in any usual spelling ("8 916 ..."), and answered in the shape of the
/// field's mask. A choice has a button for each option.
class FieldEditor : public QWidget
{
    Q_OBJECT
public:
    FieldEditor(FormField shown, QWidget *parent);

    const QString &key() const { return field.key; }
    bool isEditable() const { return field.editable; }
    /// The answer: a text, a date or an option's index; invalid without a date or an option.
    QVariant value() const;
    /// What is wrong with the answer; empty when nothing is.
    QString problem() const;
    /// Highlights the problem, even in an untouched field, and brings a right answer into shape.
    void reveal();
    /// Gives it the keyboard; the next digit extends an incomplete number and replaces another.
    void correct();
    /// Replaces the typed text.
    void setText(const QString &text);

signals:
    void changed();

private:
    QWidget *makeLine();
    QWidget *makeChoice();
    QString shaped() const;
    QDate date() const;
    QString dateProblem() const;
    QString hint() const;
    void complain(bool standsOut);
    void noteChange();

    FormField field;
    QLineEdit *line = nullptr;       ///< Null for a choice.
    QButtonGroup *options = nullptr; ///< The options of a choice.
    QLabel *note;
    bool isRevealed = false;
};

} // namespace till
