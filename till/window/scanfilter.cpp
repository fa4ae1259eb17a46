#include "till/window/scanfilter.h"

#include <QCoreApplication>
#include <QDialog>

#include <utility>

namespace till {

namespace {

using namespace std::chrono_literals;

constexpr auto readingTime = 500ms; ///< Nobody reads and answers a new dialog so fast.

bool isEnter(const QKeyEvent &key)
{
    return key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
}

bool isEnd(const QKeyEvent &key)
{
    return isEnter(key) || key.key() == Qt::Key_Tab;
}

bool isCharacter(const QKeyEvent &key)
{
    constexpr auto commands = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    return !key.text().isEmpty() && key.text().front().isPrint() && !(key.modifiers() & commands) &&
           !key.isAutoRepeat();
}

/// A scanner presses Shift for capital letters.
bool isModifier(const QKeyEvent &key)
{
    return key.key() == Qt::Key_Shift || key.key() == Qt::Key_CapsLock ||
           key.key() == Qt::Key_AltGr;
}

} // namespace

ScanFilter::ScanFilter(ScannerSettings given)
    : settings(std::move(given))
{
    silence.setSingleShot(true);
    connect(&silence, &QTimer::timeout, this, &ScanFilter::noteSilence);
    QCoreApplication::instance()->installEventFilter(this);
}

bool ScanFilter::eventFilter(QObject *watched, QEvent *event)
{
    switch (event->type()) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
        // Qt sends a key to the window before its widgets.
        if (isReleasing || !watched->isWindowType())
            return false;
        window = watched;
        return take(static_cast<QKeyEvent &>(*event));
    case QEvent::ShortcutOverride: {
        // A shortcut must not overtake the keys typed before it.
        const auto &key = static_cast<QKeyEvent &>(*event);
        if (!isReleasing && !isEnd(key) && !isCharacter(key) && !isModifier(key))
            release();
        return false;
    }
    case QEvent::MouseButtonPress:
    case QEvent::TouchBegin:
        release();
        return false;
    case QEvent::Show:
        if (auto *const shown = qobject_cast<QDialog *>(watched)) {
            dialog = shown;
            unread = QDeadlineTimer(readingTime);
        }
        return false;
    default:
        return false;
    }
}

/// \return Whether the key is withheld from the window, for now or for good.
bool ScanFilter::take(const QKeyEvent &key)
{
    if (key.type() == QEvent::KeyPress)
        return takePress(key);
    if (held.empty())
        return false;
    held.emplace_back(key.clone());
    return true;
}

bool ScanFilter::takePress(const QKeyEvent &key)
{
    if (!held.empty() && !isEarly(key))
        release();
    if (isEnd(key) && isScan()) {
        const auto code =
            burst.startsWith(settings.prefix) ? burst.mid(settings.prefix.size()) : burst;
        held.clear();
        burst.clear();
        silence.stop();
        unread = QDeadlineTimer(readingTime);
        emit scanned(code);
        return true;
    }
    if (isModifier(key))
        return false;
    if (isCharacter(key)) {
        hold(key);
        return true;
    }
    release();
    return isEnter(key) && dialog && dialog->isVisible() && !unread.hasExpired();
}

bool ScanFilter::isMarked() const
{
    return !settings.prefix.isEmpty() && burst.startsWith(settings.prefix);
}

bool ScanFilter::isScan() const
{
    return isMarked() ? burst.size() > settings.prefix.size() : burst.size() >= settings.length;
}

std::chrono::milliseconds ScanFilter::patience() const
{
    return isMarked() ? std::chrono::milliseconds(1s) : settings.gap;
}

/// Whether the key follows the held keys at a scanner's speed.
bool ScanFilter::isEarly(const QKeyEvent &key) const
{
    return key.timestamp() - last < static_cast<quint64>(patience().count());
}

void ScanFilter::hold(const QKeyEvent &key)
{
    held.emplace_back(key.clone());
    burst.append(key.text());
    last = key.timestamp();
    sinceHeld.start();
    silence.start(patience());
}

/// Passes the held keys to the window: a hand typed them.
void ScanFilter::release()
{
    silence.stop();
    burst.clear();
    isReleasing = true;
    for (const auto &event : std::exchange(held, {})) {
        if (window)
            QCoreApplication::sendEvent(window, event.get());
    }
    isReleasing = false;
}

void ScanFilter::noteSilence()
{
    // The program was busy, and keys typed in time may still be queued.
    const auto isLate = sinceHeld.isValid() && sinceHeld.elapsed() > 2 * patience().count();
    if (!isLate) {
        release();
        return;
    }
    sinceHeld.invalidate();
    silence.start(patience());
}

} // namespace till
