#include "till/window/fieldeditor.h"

#include "till/core/inputmask.h"
#include "till/window/named.h"
#include "till/words/figures.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>

namespace till {

using namespace Qt::StringLiterals;

FieldEditor::FieldEditor(FormField shown, QWidget *parent)
    : QWidget(parent)
    , field(std::move(shown))
    , note(makeLabel(this, u"note"_s))
{
    // Qt's date field cannot be empty, replaces a day out of range, and does not take digits typed
    // from left to right.
    if (field.kind == FormFieldKind::Date)
        field.inputMask = u"99.99.9999;_"_s;
    auto *const label = makeLabel(this, u"label"_s, field.label.toString());
    if (field.mandatory && field.editable)
        label->setText(
            tr("%1 *", "the label of a field that must be filled in").arg(label->text()));
    label->setHidden(field.label.isEmpty());
    auto *const input = field.kind == FormFieldKind::Choice ? makeChoice() : makeLine();
    named(input, u"field_"_s + field.key, field.label.toString());
    label->setBuddy(input);
    setFocusProxy(input);
    note->setAlignment(Qt::AlignRight);
    note->setWordWrap(true);
    auto *const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(2);
    grid->addWidget(label, 0, 0);
    grid->addWidget(note, 0, 1);
    grid->setColumnStretch(1, 1);
    grid->addWidget(input, 1, 0, 1, 2);
    complain(false);
}

QWidget *FieldEditor::makeLine()
{
    line = new QLineEdit(this);
    setText(field.value);
    line->setPlaceholderText(field.inputMask.isEmpty() ? field.hint
                                                       : InputMask(field.inputMask).outline());
    line->setReadOnly(!field.editable);
    line->setProperty("fixed", !field.editable);
    // The context menu would be in Qt's language, not the till's.
    line->setContextMenuPolicy(Qt::NoContextMenu);
    connect(line, &QLineEdit::textChanged, this, &FieldEditor::noteChange);
    return line;
}

QWidget *FieldEditor::makeChoice()
{
    auto *const input = new QWidget(this);
    auto *const buttons = new QHBoxLayout(input);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(6);
    options = new QButtonGroup(this);
    for (int index = 0; index < field.options.size(); ++index) {
        auto *const button = named(new QPushButton(field.options.at(index).toString(), input),
                                   u"%1_%2"_s.arg(field.key).arg(index));
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setEnabled(field.editable);
        button->setProperty("option", true);
        button->setChecked(field.value == QString::number(index));
        options->addButton(button, index);
        buttons->addWidget(button);
        if (index == 0 || button->isChecked())
            input->setFocusProxy(button);
    }
    connect(options, &QButtonGroup::idToggled, this, &FieldEditor::noteChange);
    return input;
}

QVariant FieldEditor::value() const
{
    switch (field.kind) {
    case FormFieldKind::Choice:
        return options->checkedButton() ? QVariant(options->checkedId()) : QVariant();
    case FormFieldKind::Date:
        return date().isValid() ? QVariant(date()) : QVariant();
    default:
        return shaped();
    }
}

/// The typed text in the shape of the mask, if it fits.
QString FieldEditor::shaped() const
{
    const auto text = line->text().trimmed();
    return InputMask(field.inputMask).apply(text).value_or(text);
}

QDate FieldEditor::date() const
{
    return QDate::fromString(shaped(), dateFormat);
}

QString FieldEditor::problem() const
{
    if (!field.editable)
        return {};
    if (options ? !options->checkedButton() : shaped().isEmpty())
        return field.mandatory ? tr("Must be filled in") : QString();
    if (options)
        return {};
    if (field.kind == FormFieldKind::Date)
        return dateProblem();
    const InputMask mask(field.inputMask);
    if (!mask.apply(line->text()))
        return tr("Not complete: %1").arg(mask.outline());
    const QRegularExpression whole(QRegularExpression::anchoredPattern(field.validator));
    return field.validator.isEmpty() || whole.match(shaped()).hasMatch()
               ? QString()
               : tr("Not in the expected format");
}

QString FieldEditor::dateProblem() const
{
    if (!InputMask(field.inputMask).apply(line->text()))
        return tr("Day, month and year, such as %1").arg(dateLabel(QDate(1990, 12, 31)));
    if (!date().isValid())
        return tr("There is no such day");
    if (field.minDate.isValid() && date() < field.minDate)
        return tr("Not before %1").arg(dateLabel(field.minDate));
    if (field.maxDate.isValid() && date() > field.maxDate)
        return tr("Not after %1").arg(dateLabel(field.maxDate));
    return {};
}

void FieldEditor::setText(const QString &text)
{
    line->setText(InputMask(field.inputMask).apply(text).value_or(text));
}

void FieldEditor::reveal()
{
    if (line)
        setText(line->text());
    isRevealed = true;
    complain(true);
}

void FieldEditor::correct()
{
    setFocus();
    if (line && field.keyboardDigits && InputMask(field.inputMask).apply(line->text()))
        line->selectAll();
}

/// The note when nothing is wrong.
QString FieldEditor::hint() const
{
    const auto isOptional = !field.mandatory && !field.label.isEmpty();
    if (!field.editable)
        return tr("Cannot be changed");
    if (line && shaped() != line->text())
        return shaped();
    if (field.kind == FormFieldKind::Date)
        return tr("DD.MM.YYYY");
    return isOptional ? tr("May be left empty") : u" "_s; // keeps the line's height
}

/// Shows the problem or the hint; `standsOut` highlights a problem.
void FieldEditor::complain(bool standsOut)
{
    const auto wrong = problem();
    note->setText(wrong.isEmpty() ? hint() : wrong);
    mark(note, "problem", standsOut && !wrong.isEmpty());
    mark(focusProxy(), "wrong", standsOut && !wrong.isEmpty());
    focusProxy()->setAccessibleDescription(note->text().trimmed());
}

/// Shows a problem without highlighting it: the cashier is still typing.
void FieldEditor::noteChange()
{
    isRevealed = isRevealed && !problem().isEmpty();
    complain(isRevealed);
    emit changed();
}

} // namespace till
