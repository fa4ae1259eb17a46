#include "till/window/fieldeditor.h"

#include "till/core/inputmask.h"
#include "till/window/linefield.h"

#include <QButtonGroup>
#include <QCalendarWidget>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QPushButton>
#include <QRegularExpressionValidator>
#include <QStyle>
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
    , column(new QVBoxLayout(this))
    , label(new QLabel(this))
    , note(new QLabel(this))
{
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(2);
    label->setText(
        field.mandatory && field.editable
            ? tr("%1 *", "the label of a field that must be filled in").arg(field.label.toString())
            : field.label.toString());
    label->setObjectName(QStringLiteral("label"));
    label->setHidden(field.label.isEmpty());
    note->setObjectName(QStringLiteral("note"));
    column->addWidget(label);
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
    showNote(problem(), true);
}

void FieldEditor::addInput(QWidget *input, QWidget *focus)
{
    focus->setObjectName(QStringLiteral("field_") + field.key);
    focus->setAccessibleName(field.label.toString());
    focus->setProperty("fixed", !field.editable);
    if (field.keyboardDigits)
        focus->setInputMethodHints(Qt::ImhPreferNumbers);
    label->setBuddy(focus);
    setFocusProxy(focus);
    column->insertWidget(1, input);
    if (!field.editable)
        showNote(tr("Cannot be changed"), false);
    else
        showNote(field.mandatory || field.label.isEmpty() ? QString() : tr("May be left empty"),
                 false);
}

void FieldEditor::complain(const QString &text)
{
    showNote(text, true);
}

/// What is still wrong stands out only once the cashier thinks that all is there.
void FieldEditor::noteChange()
{
    isRevealed = isRevealed && !problem().isEmpty();
    showNote(problem(), isRevealed);
    emit changed();
}

void FieldEditor::showNote(const QString &text, bool isProblem)
{
    note->setText(text.isEmpty() ? QStringLiteral(" ") : text);
    note->setProperty("problem", isProblem);
    focusProxy()->setProperty("wrong", isProblem && !text.isEmpty());
    focusProxy()->setAccessibleDescription(text);
    for (auto *const widget : {static_cast<QWidget *>(note), focusProxy()})
        widget->style()->polish(widget);
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
    addInput(line, line);
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
    : FieldEditor(shown, parent)
    , line(new LineField(this))
{
    const auto first = QDate::fromString(field.value, QStringLiteral("dd.MM.yyyy"));
    line->setUp(dateMask(), first.toString(dateFormat()));
    line->setReadOnly(!field.editable);
    auto *const input = new QWidget(this);
    auto *const row = new QHBoxLayout(input);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(line);
    auto *const button = new QToolButton(input);
    button->setText(tr("Calendar"));
    button->setObjectName(QStringLiteral("calendar_") + field.key);
    button->setFocusPolicy(Qt::TabFocus);
    button->setEnabled(field.editable);
    row->addWidget(button);
    addInput(input, line);
    connect(button, &QToolButton::clicked, this, &DateEditor::pick);
    connect(line, &QLineEdit::textChanged, this, &DateEditor::noteChange);
}

QVariant DateEditor::value() const
{
    return date().isValid() ? QVariant(date()) : QVariant();
}

bool DateEditor::isBlank() const
{
    return line->isBlank();
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
    auto *const calendar = new QCalendarWidget(menu);
    calendar->setObjectName(QStringLiteral("calendar"));
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
    auto *const row = new QHBoxLayout(input);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(6);
    for (int index = 0; index < field.options.size(); ++index) {
        auto *const button = new QPushButton(field.options.at(index).toString(), input);
        button->setObjectName(QStringLiteral("%1_%2").arg(field.key).arg(index));
        button->setCheckable(true);
        button->setAutoDefault(false);
        button->setEnabled(field.editable);
        button->setProperty("option", true);
        options->addButton(button, index);
        row->addWidget(button);
    }
    bool isIndex = false;
    if (auto *const first = options->button(field.value.toInt(&isIndex)); first && isIndex)
        first->setChecked(true);
    addInput(input, input);
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
