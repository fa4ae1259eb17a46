#include "till/window/fieldeditor.h"

#include "till/core/inputmask.h"
#include "till/window/linefield.h"
#include "till/window/named.h"

#include <QButtonGroup>
#include <QCalendarWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWidgetAction>

namespace till {

namespace {

/// Looks at the text as a whole: what is typed on the way to a right one is let through, the empty
/// places of a mask included.
class WholeTextValidator : public QRegularExpressionValidator
{
public:
    using QRegularExpressionValidator::QRegularExpressionValidator;

    State validate(QString &text, int & /*position*/) const override
    {
        int end = 0; // where it would put the cursor
        const auto state = QRegularExpressionValidator::validate(text, end);
        return state == Invalid ? Intermediate : state;
    }
};

/// How the language writes a date, in digits.
QString dateFormat()
{
    return QLocale().dateFormat(QLocale::ShortFormat);
}

QString dateMask()
{
    auto mask = dateFormat();
    for (auto &character : mask)
        character = character.isLetter() ? QChar(u'9') : character;
    return mask + QStringLiteral(";_");
}

/// A date's field as that of a text.
FormField typedDate(FormField field)
{
    const auto first = QDate::fromString(field.value, QStringLiteral("dd.MM.yyyy"));
    field.inputMask = dateMask();
    field.value = first.toString(dateFormat());
    field.validator.clear();
    return field;
}

} // namespace

FieldEditor *FieldEditor::create(const FormField &field, QWidget *parent)
{
    switch (field.kind) {
    case FormFieldKind::Choice:
        return new ChoiceEditor(field, parent);
    case FormFieldKind::Date:
        return new DateEditor(field, parent);
    default:
        return new TextEditor(field, parent);
    }
}

FieldEditor::FieldEditor(FormField shown, QWidget *parent)
    : QWidget(parent)
    , field(std::move(shown))
    , row(new QHBoxLayout)
    , label(named(new QLabel(this), QStringLiteral("label")))
    , note(named(new QLabel(this), QStringLiteral("note")))
{
    auto *const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    row->setSpacing(6);
    label->setText(
        field.mandatory && field.editable
            ? tr("%1 *", "the label of a field that must be filled in").arg(field.label.toString())
            : field.label.toString());
    label->setHidden(field.label.isEmpty());
    column->addWidget(label);
    column->addLayout(row);
    column->addWidget(note);
}

QString FieldEditor::problem() const
{
    if (!field.editable)
        return {};
    if (isBlank())
        return field.mandatory ? tr("Must be filled in") : QString();
    return enteredProblem();
}

void FieldEditor::reveal()
{
    isRevealed = true;
    complain(problem());
}

void FieldEditor::addInput(QWidget *input)
{
    named(input, QStringLiteral("field_") + field.key, field.label.toString());
    input->setProperty("fixed", !field.editable);
    if (field.keyboardDigits)
        input->setInputMethodHints(Qt::ImhPreferNumbers);
    label->setBuddy(input);
    setFocusProxy(input);
    row->addWidget(input);
    complain({});
}

void FieldEditor::complain(const QString &problem, bool standsOut)
{
    const auto isOptional = !field.mandatory && !field.label.isEmpty();
    const auto usual = !field.editable ? tr("Cannot be changed")
                       : isOptional    ? tr("May be left empty")
                                       : QStringLiteral(" "); // keeps its place
    note->setText(problem.isEmpty() ? usual : problem);
    mark(note, "problem", standsOut && !problem.isEmpty());
    mark(focusProxy(), "wrong", standsOut && !problem.isEmpty());
    focusProxy()->setAccessibleDescription(note->text().trimmed());
}

/// What is still wrong stands out only once the cashier thinks that all is there.
void FieldEditor::noteChange()
{
    const auto wrong = problem();
    isRevealed = isRevealed && !wrong.isEmpty();
    complain(wrong, isRevealed);
    emit changed();
}

TextEditor::TextEditor(const FormField &shown, QWidget *parent, const QString &mismatch)
    : FieldEditor(shown, parent)
    , line(new LineField(this))
    , mismatch(mismatch)
{
    line->setUp(field.inputMask, field.value);
    line->setPlaceholderText(field.hint);
    line->setReadOnly(!field.editable);
    if (!field.validator.isEmpty())
        line->setValidator(new WholeTextValidator(QRegularExpression(field.validator), line));
    addInput(line);
    connect(line, &QLineEdit::textChanged, this, &TextEditor::noteChange);
    connect(line, &QLineEdit::inputRejected, this,
            [this] { complain(tr("That does not fit in here")); });
}

QVariant TextEditor::value() const
{
    return line->typed().trimmed();
}

bool TextEditor::isBlank() const
{
    return line->typed().trimmed().isEmpty();
}

QString TextEditor::enteredProblem() const
{
    if (line->hasAcceptableInput())
        return {};
    if (!field.inputMask.isEmpty())
        return tr("To be filled in to the end: %1").arg(InputMask(field.inputMask).outline());
    return mismatch.isEmpty() ? tr("Not of the form that is expected here") : mismatch;
}

DateEditor::DateEditor(const FormField &shown, QWidget *parent)
    : TextEditor(typedDate(shown), parent)
{
    auto *const button = named(new QToolButton(this), QStringLiteral("calendar_") + field.key);
    button->setText(tr("Calendar"));
    button->setFocusPolicy(Qt::TabFocus);
    button->setEnabled(field.editable);
    row->addWidget(button);
    connect(button, &QToolButton::clicked, this, &DateEditor::pick);
}

QVariant DateEditor::value() const
{
    return date().isValid() ? QVariant(date()) : QVariant();
}

QString DateEditor::enteredProblem() const
{
    if (!date().isValid())
        return line->hasAcceptableInput()
                   ? tr("There is no such day")
                   : tr("Day, month and year: %1").arg(QDate(1990, 12, 31).toString(dateFormat()));
    if (field.minDate.isValid() && date() < field.minDate)
        return tr("Not before %1").arg(field.minDate.toString(dateFormat()));
    if (field.maxDate.isValid() && date() > field.maxDate)
        return tr("Not after %1").arg(field.maxDate.toString(dateFormat()));
    return {};
}

QDate DateEditor::date() const
{
    return QDate::fromString(line->text(), dateFormat());
}

void DateEditor::pick()
{
    auto *const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    auto *const calendar = named(new QCalendarWidget(menu), QStringLiteral("calendar"));
    calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar->setMinimumSize(420, 320);
    if (field.minDate.isValid())
        calendar->setMinimumDate(field.minDate);
    if (field.maxDate.isValid())
        calendar->setMaximumDate(field.maxDate);
    if (date().isValid())
        calendar->setSelectedDate(date());
    const auto take = [this, menu](const QDate &day) {
        line->setText(day.toString(dateFormat()));
        menu->close();
    };
    connect(calendar, &QCalendarWidget::activated, this, take);
    connect(calendar, &QCalendarWidget::clicked, this, take);
    auto *const entry = new QWidgetAction(menu);
    entry->setDefaultWidget(calendar);
    menu->addAction(entry);
    menu->popup(line->mapToGlobal(QPoint(0, line->height())));
    calendar->setFocus();
}

ChoiceEditor::ChoiceEditor(const FormField &shown, QWidget *parent)
    : FieldEditor(shown, parent)
    , options(new QButtonGroup(this))
{
    auto *const input = new QWidget(this);
    auto *const buttons = new QHBoxLayout(input);
    buttons->setContentsMargins(0, 0, 0, 0);
    buttons->setSpacing(6);
    for (int index = 0; index < field.options.size(); ++index) {
        auto *const button = named(new QPushButton(field.options.at(index).toString(), input),
                                   QStringLiteral("%1_%2").arg(field.key).arg(index));
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setEnabled(field.editable);
        button->setProperty("option", true);
        options->addButton(button, index);
        buttons->addWidget(button);
    }
    bool isIndex = false;
    if (auto *const first = options->button(field.value.toInt(&isIndex)); first && isIndex)
        first->setChecked(true);
    addInput(input);
    if (auto *const checked = options->checkedButton())
        setFocusProxy(checked);
    connect(options, &QButtonGroup::idToggled, this, &ChoiceEditor::noteChange);
}

QVariant ChoiceEditor::value() const
{
    return isBlank() ? QVariant() : QVariant(options->checkedId());
}

bool ChoiceEditor::isBlank() const
{
    return !options->checkedButton();
}

} // namespace till
