#pragma once

#include "till/window/dialogframe.h"

#include <host/dialogrequests.h>

class QPlainTextEdit;

namespace till {

class NumberPad;
class TextEditor;

/// A text, typed, scanned or entered on the pad.
///
/// After an answer it stays, and shows that the answer is looked at, until it is disposed of or
/// asked again: so a second question about the same comes in the place of the first.
class InputDialog : public DialogFrame
{
    Q_OBJECT
public:
    InputDialog(QWidget &window, InputTextRequest request);

    void accept() override;

    const InputTextRequest &asked() const { return request; }
    /// Shows the request's message, and an empty line.
    void askAgain(const InputTextRequest &next);
    /// Whether an answer was given and nothing was asked since.
    bool waits() const { return isWaiting; }

signals:
    void answered(const QString &text);

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    void addInput();
    void setWaiting(bool on);
    void check();
    QString text() const;

    InputTextRequest request;
    QLabel *message;
    TextEditor *editor = nullptr;
    QPlainTextEdit *lines = nullptr; ///< In place of `editor` when there may be several.
    bool isWaiting = false;
};

} // namespace till
