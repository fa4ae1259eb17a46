#include "till/window/formdialog.h"

#include "till/core/formfields.h"
#include "till/window/fieldeditor.h"
#include "till/window/numberpad.h"

#include <QApplication>
#include <QGridLayout>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <optional>

namespace till {

FormDialog::FormDialog(QWidget &window, const FormRequest &request)
    : DialogFrame(window, request.title.toString())
    , pad(new NumberPad(NumberPad::Keys::Numbers, this))
    , validates(request.validates)
{
    setObjectName(QStringLiteral("formDialog"));
    setCancellable(request.cancellable);
    setMinimumWidth(request.compact ? 560 : 760);
    addText(QStringLiteral("message"), request.subtitle.toString());
    auto *const row = new QHBoxLayout;
    row->setSpacing(24);
    row->addLayout(addFields(request), 1);
    row->addWidget(pad, 0, Qt::AlignBottom);
    content().addLayout(row);
    addButtons(request.showsOk ? request.okText.isEmpty() ? tr("OK") : request.okText.toString()
                               : QString(),
               request.showsCancel && request.cancellable ? tr("Cancel") : QString());
    connect(qApp, &QApplication::focusChanged, this, &FormDialog::followFocus);
    check();
    auto *const first = firstToFill(request.focusedField);
    focusFirst(first ? first : okButton());
}

/// The fields in rows: those of one number beside each other, those without one in as many columns
/// as the form asks for.
QLayout *FormDialog::addFields(const FormRequest &request)
{
    auto *const rows = new QVBoxLayout;
    rows->setSpacing(10);
    QHBoxLayout *row = nullptr;
    std::optional<int> order;
    for (auto field : fieldsInOrder(request.fields)) {
        const auto isBeside =
            order && (field.order >= 0 ? field.order == *order : row->count() < request.columns);
        if (!isBeside) {
            row = new QHBoxLayout;
            row->setSpacing(16);
            rows->addLayout(row);
        }
        order = field.order;
        field.editable = field.editable && !request.readOnly;
        auto *const editor = FieldEditor::create(field, this);
        connect(editor, &FieldEditor::changed, this, &FormDialog::check);
        row->addWidget(editor, 1);
        editors.append(editor);
    }
    return rows;
}

/// The first field that is wrong, else the one asked for or the first; null when none can be
/// changed.
QWidget *FormDialog::firstToFill(const QString &key) const
{
    if (auto *const wrong = firstWrong())
        return wrong;
    const auto found = std::find_if(editors.begin(), editors.end(), [&key](const auto *editor) {
        return editor->isEditable() && (key.isEmpty() || editor->key() == key);
    });
    return found == editors.end() ? nullptr : *found;
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

void FormDialog::keyPressEvent(QKeyEvent *event)
{
    const auto isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    auto *const wrong = isEnter && validates ? firstWrong() : nullptr;
    if (!wrong) {
        DialogFrame::keyPressEvent(event);
        return;
    }
    for (auto *const editor : std::as_const(editors))
        editor->reveal();
    wrong->setFocus();
}

FieldEditor *FormDialog::firstWrong() const
{
    const auto isWrong = [](const FieldEditor *editor) { return !editor->problem().isEmpty(); };
    const auto found = std::find_if(editors.begin(), editors.end(), isWrong);
    return found == editors.end() ? nullptr : *found;
}

void FormDialog::check()
{
    okButton()->setEnabled(!validates || !firstWrong());
}

/// A field that is left says what is wrong with it; the pad is for those that take digits.
void FormDialog::followFocus(QWidget *before, QWidget *now)
{
    for (auto *const editor : std::as_const(editors)) {
        if (now && editor->isAncestorOf(now))
            pad->setEnabled(editor->isDigitsOnly() && editor->isEditable());
        else if (before && now && editor->isAncestorOf(before) && isAncestorOf(now))
            editor->reveal();
    }
}

} // namespace till
