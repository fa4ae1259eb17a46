#pragma once

#include <QElapsedTimer>
#include <QFrame>
#include <QTimer>

class QLabel;

namespace till {

/// Shows what the till waits for, for how long, and how many steps wait behind.
class ProgressCard : public QFrame
{
    Q_OBJECT
public:
    explicit ProgressCard(QWidget *parent);

    /// The loyalty system's progress text; empty for none.
    void setText(const QString &text);
    /// The unfinished steps, the one under way first. The card appears after a noticeable wait, and
    /// disappears when there are no steps.
    void setSteps(const QStringList &steps);
    bool isShown() const { return isNoticed; }

signals:
    /// The card must appear or disappear.
    void shown(bool on);

private:
    void refresh();
    void setNoticed(bool on);

    QString text;
    QStringList steps;
    QElapsedTimer since; ///< Valid while there are steps.
    QTimer timer;
    QLabel *label;
    bool isNoticed = false;
};

} // namespace till
