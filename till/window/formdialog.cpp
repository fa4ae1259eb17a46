#include "till/window/formdialog.h"

#include "till/window/fieldeditor.h"
#include "till/window/numberpad.h"

#include <QApplication>
#include <QBoxLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QScrollArea>

#include <algorithm>

namespace till {

namespace {

/// Whether digit keys are enough for all fields.
bool isInDigits(const QList<FormField> &fields)
{
    return std::ranges::all_of(fields, &FormField::keyboardDigits);
}

} // namespace

FormDialog::FormDialog(QWidget &window, const Words &words, const QList<FormField> &fields,
                       bool takesScans)
    : MessageDialog(window, Kind::Plain, words, isInDigits(fields) ? 540 : 760)
    , takesScans(takesScans)
{
    setObjectName(u"formDialog");
    const auto isDigits = isInDigits(fields);
    pad = new NumberPad(isDigits ? NumberPad::Keys::Numbers : NumberPad::Keys::Letters);
    auto *const both = new QBoxLayout(isDigits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    both->setSpacing(8);
    both->addLayout(layOutFields(fields), 1);
    both->addWidget(pad);
    content().addLayout(both);
    connect(qApp, &QApplication::focusChanged, this, &FormDialog::followFocus);
    check();
    auto *first = firstWrong();
    if (!first)
        first = *std::ranges::find_if(editors, &FieldEditor::isEditable);
    first->correct();
    focusFirst(first);
}

/// Lays the fields out in rows; fields of the same number share a row.
QLayout *FormDialog::layOutFields(const QList<FormField> &fields)
{
    auto *const rows = new QVBoxLayout;
    rows->setSpacing(4);
    QHBoxLayout *row = nullptr;
    int order = -1;
    for (const auto &field : fields) {
        if (!row || field.order < 0 || field.order != order) {
            row = new QHBoxLayout;
            row->setSpacing(16);
            rows->addLayout(row);
        }
        order = field.order;
        auto *const editor = new FieldEditor(field, this);
        if (field.label.isEmpty())
            editor->focusProxy()->setAccessibleName(accessibleName());
        connect(editor, &FieldEditor::changed, this, &FormDialog::check);
        row->addWidget(editor, 1);
        editors.append(editor);
    }
    rows->addStretch();
    return rows;
}

QVariantMap FormDialog::answers() const
{
    QVariantMap answers;
    for (const auto *const editor : editors) {
        if (const auto value = editor->value(); value.isValid())
            answers.insert(editor->key(), value);
    }
    return answers;
}

void FormDialog::takeScan(const QString &code)
{
    if (takesScans)
        editors.first()->setText(code);
    else
        MessageDialog::takeScan(code);
}

void FormDialog::keyPressEvent(QKeyEvent *event)
{
    const auto isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *const wrong = isEnter ? firstWrong() : nullptr;
    if (!wrong) {
        MessageDialog::keyPressEvent(event);
        return;
    }
    for (auto *const editor : std::as_const(editors))
        editor->reveal();
    wrong->correct();
}

FieldEditor *FormDialog::firstWrong() const
{
    const auto isWrong = [](const FieldEditor *editor) { return !editor->problem().isEmpty(); };
    const auto found = std::ranges::find_if(editors, isWrong);
    return found == editors.end() ? nullptr : *found;
}

void FormDialog::check()
{
    okButton()->setEnabled(!firstWrong());
}

/// Highlights the problem of a field that loses the focus.
void FormDialog::followFocus(QWidget *before, QWidget *now)
{
    for (auto *const editor : std::as_const(editors)) {
        if (now && editor->isAncestorOf(now)) {
            pad->setEnabled(editor->isEditable());
            findChild<QScrollArea *>()->ensureWidgetVisible(editor);
        } else if (before && now && editor->isAncestorOf(before) && isAncestorOf(now))
            editor->reveal();
    }
}

} // namespace till
