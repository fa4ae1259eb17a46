#include "till/window/inputdialog.h"

#include "till/window/fieldeditor.h"
#include "till/window/linefield.h"
#include "till/window/named.h"
#include "till/window/numberpad.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QTimer>
#include <QVBoxLayout>

namespace till {

InputDialog::InputDialog(QWidget &window, InputTextRequest asked)
    : DialogFrame(window, asked.title.toString())
    , request(std::move(asked))
    , message(addText(QStringLiteral("message"), request.message.toString()))
{
    setObjectName(QStringLiteral("inputDialog"));
    setCancellable(request.cancellable != 0);
    setMinimumWidth(420);
    addInput();
    if (request.virtualKeyboard != 0)
        content().addWidget(new NumberPad(NumberPad::Keys::Numbers, this));
    const auto textOr = [](const tr::Tr &text, const QString &usual) {
        return text.isEmpty() ? usual : text.toString();
    };
    addButtons(textOr(request.okText, tr("OK")),
               request.cancellable != 0 ? textOr(request.cancelText, tr("Cancel")) : QString());
    if (request.timeout > 0)
        QTimer::singleShot(request.timeout, this, [this] { QDialog::reject(); });
    check();
}

void InputDialog::addInput()
{
    if (request.multiLine != 0) {
        lines = named(new QPlainTextEdit(request.initialText, this), QStringLiteral("field_input"),
                      request.message.toString());
        lines->setTabChangesFocus(true);
        content().addWidget(lines);
        focusFirst(lines);
        return;
    }
    FormField field;
    field.key = QStringLiteral("input");
    field.kind = FormFieldKind::Text;
    field.validator = request.validator;
    field.inputMask = request.inputMask;
    field.value = request.initialText;
    field.hint = request.hint;
    const QRegularExpression pattern(QRegularExpression::anchoredPattern(request.validator));
    field.mandatory = !request.validator.isEmpty() && !pattern.match(QString()).hasMatch();
    field.keyboardDigits = request.numeric != 0;
    const auto misread = request.scanAllowed ? request.scanError.toString() : QString();
    editor = new TextEditor(field, this, misread);
    auto &line = editor->input();
    line.setAccessibleName(request.message.toString());
    if (request.maximumLength > 0 && request.inputMask.isEmpty())
        line.setMaxLength(request.maximumLength);
    if (request.hidden != 0)
        line.setEchoMode(QLineEdit::Password);
    content().addWidget(editor);
    connect(editor, &FieldEditor::changed, this, &InputDialog::check);
    focusFirst(&line);
    if (request.selectsInitialText != 0)
        line.selectAll();
}

void InputDialog::accept()
{
    if (isWaiting || !okButton()->isEnabled())
        return;
    setWaiting(true);
    emit answered(text());
}

void InputDialog::askAgain(const InputTextRequest &next)
{
    request = next;
    setWaiting(false);
    message->setText(request.message.toString());
    message->show();
    if (editor)
        editor->input().setUp(request.inputMask, request.initialText);
    (editor ? static_cast<QWidget *>(&editor->input()) : lines)->setFocus();
}

void InputDialog::keyPressEvent(QKeyEvent *event)
{
    const auto isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (isEnter && !okButton()->isEnabled() && editor)
        editor->reveal();
    if (request.acceptedKeys.contains(event->key()))
        accept();
    else
        DialogFrame::keyPressEvent(event);
}

void InputDialog::setWaiting(bool on)
{
    isWaiting = on;
    okButton()->setEnabled(!on);
    if (editor)
        editor->input().setReadOnly(on);
}

void InputDialog::check()
{
    okButton()->setEnabled(!editor || editor->problem().isEmpty());
}

QString InputDialog::text() const
{
    const auto typed = lines ? lines->toPlainText() : editor->value().toString();
    return request.upperCase != 0 ? typed.toUpper() : typed;
}

} // namespace till
