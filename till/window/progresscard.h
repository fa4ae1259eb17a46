#pragma once

#include <QElapsedTimer>
#include <QFrame>
#include <QTimer>

class QLabel;
class QProgressBar;

namespace till {

/// What the till waits for and since when.
class ProgressCard : public QFrame
{
    Q_OBJECT
public:
    explicit ProgressCard(QWidget &window);

    /// What is waited for; empty for the usual words.
    void setText(const QString &text);
    /// Shows the card once the wait has taken long enough to be noticed, until it is turned off.
    void setWaiting(bool on);

signals:
    /// The card has come, or gone.
    void shown();

private:
    void tick();

    QElapsedTimer since;
    QTimer timer;
    QLabel *label;
    QLabel *seconds;
    QProgressBar *bar;
};

} // namespace till
