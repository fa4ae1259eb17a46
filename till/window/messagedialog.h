#pragma once

#include <QDialog>
#include <QVariantMap>

class QLabel;
class QPushButton;
class QVBoxLayout;

namespace till {

/// A message to acknowledge, or a question with two answers.
///
/// A card on a shade that covers the whole window, so that it needs no window manager and nothing
/// behind it can be used. The window's layout must be a grid. Enter, Esc and Tab work as in every
/// dialog. A tall content scrolls between title and buttons. Deletes itself when it is finished.
class MessageDialog : public QDialog
{
    Q_OBJECT
public:
    enum class Kind {
        Plain,
        Error,
        Warning, ///< A question whose "yes" destroys something: Enter means "no".
    };
    struct Words
    {
        QString title; ///< Empty for none.
        QString text;
        QString cancel = {};  ///< Empty for no second answer.
        QString ok = {};      ///< Empty for "OK".
        QString details = {}; ///< Shown on demand, for support.
    };

    /// `width` is in pixels at a unit of 1; see `unitFor`.
    MessageDialog(QWidget &window, Kind kind, const Words &words, int width = 480);

    /// The dialog with the keyboard; null when the window itself has it.
    static MessageDialog *onTop(const QWidget &window);

    /// Shows the dialog and sets the focus; see `focusFirst`.
    void appear();
    /// Takes a scanned code. By default tells the cashier to finish the dialog first.
    virtual void takeScan(const QString &code);
    /// The answers to an accepted dialog's questions.
    virtual QVariantMap answers() const { return {}; }

protected:
    QVBoxLayout &content() const { return *column; }
    QPushButton *okButton() const { return ok; }
    void focusFirst(QWidget *widget) { first = widget; }

private:
    QLabel *addText(const QString &name, const QString &text);
    void addDetails(const QString &details);
    QLayout *layOutButtons(Kind kind, const Words &words);
    void giveKeys();

    QVBoxLayout *column; ///< Holds the scrolled content.
    QLabel *scan;        ///< Tells that a scan is not taken.
    QPushButton *ok;
    QWidget *first;
};

} // namespace till
