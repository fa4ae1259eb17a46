#pragma once

#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>
#include <vector>

class QDialog;

namespace till {

/// The scanner's settings.
struct ScannerSettings
{
    std::chrono::milliseconds gap{30}; ///< The longest time between two characters.
    int length = 4;                    ///< The fewest characters of a scan.
    QString prefix;                    ///< The text before each scan; empty for none.
};

/// Tells a scanner from a typing hand, for the whole application.
///
/// A scan is a burst of characters that ends with Enter or Tab. Characters are held back until the
/// filter knows who typed them: a scan reaches no widget, and typing arrives one gap later. A burst
/// that begins with the prefix is a scan, however short or slow.
class ScanFilter : public QObject
{
    Q_OBJECT
public:
    /// Filters the application's events.
    explicit ScanFilter(ScannerSettings settings);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /// A scanned code, without prefix and end key.
    void scanned(const QString &code);

private:
    bool take(const QKeyEvent &key);
    bool takePress(const QKeyEvent &key);
    bool isMarked() const;
    bool isScan() const;
    std::chrono::milliseconds patience() const;
    bool isEarly(const QKeyEvent &key) const;
    void hold(const QKeyEvent &key);
    void release();
    void noteSilence();

    const ScannerSettings settings;
    std::vector<std::unique_ptr<QEvent>> held; ///< Presses and releases of `burst`.
    QString burst;
    QPointer<QObject> window; ///< The window that gets the held keys.
    quint64 last = 0;         ///< The time stamp of the last character held.
    QTimer silence;
    QElapsedTimer sinceHeld;
    QPointer<QDialog> dialog; ///< The dialog shown last.
    QDeadlineTimer unread;    ///< Until then nobody can have read the dialog.
    bool isReleasing = false;
};

} // namespace till
