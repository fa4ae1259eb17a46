#pragma once

#include <QDialog>
#include <QPointer>

class QLabel;
class QLayout;
class QPushButton;
class QVBoxLayout;

namespace till {

/// What lies before the window while a dialog is open: nothing behind it can be reached. The
/// window's layout is a grid, all of which it covers.
class Curtain : public QWidget
{
    Q_OBJECT
public:
    explicit Curtain(QWidget &window);

    /// Goes. What was behind it can be reached again, and has the focus that it had.
    void lift();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QList<QPointer<QWidget>> covered;
    QPointer<QWidget> focusBefore;
};

/// A dialog inside the window, so that it works on a till without a window manager too: a card in
/// the middle of a curtain. Enter, Esc and Tab do what they do in every dialog.
///
/// Lives until it is finished.
class DialogFrame : public QDialog
{
    Q_OBJECT
public:
    DialogFrame(QWidget &window, const QString &title);

    /// Comes before the window, with the focus where it was asked for.
    void appear();
    void reject() override;
    void setCancellable(bool on) { isCancellable = on; }
    /// Ends the dialog, as cancelled if it is not finished, and takes the curtain away.
    void dispose();

protected:
    /// A label that is not shown while it is empty.
    QLabel *addText(const QString &name, const QString &text);
    /// The row of buttons; an empty text for none.
    void addButtons(const QString &ok, const QString &cancel);
    QVBoxLayout &content() const { return *column; }
    QPushButton *okButton() const { return ok; }
    void focusFirst(QWidget *widget) { first = widget; }

private:
    QVBoxLayout *column;
    QPushButton *ok = nullptr;
    QWidget *first = nullptr;
    bool isCancellable = true;
};

/// A text to be acknowledged, or a question with two answers.
class MessageDialog : public DialogFrame
{
    Q_OBJECT
public:
    enum class Kind { Message, Error, Question };

    /// An empty `cancel` for no second answer.
    MessageDialog(QWidget &window, Kind kind, const QString &text, const QString &ok,
                  const QString &cancel = {});
};

} // namespace till
