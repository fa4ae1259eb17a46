#include "till/window/linefield.h"

#include "till/core/inputmask.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QKeyEvent>

namespace till {

LineField::LineField(QWidget *parent)
    : QLineEdit(parent)
{
    // Its menu would be the only one on the screen, in Qt's language.
    setContextMenuPolicy(Qt::NoContextMenu);
}

void LineField::setUp(const QString &mask, const QString &text)
{
    setInputMask(mask);
    clear();
    blank = displayText();
    const auto delimiter = mask.indexOf(u';');
    emptyPlace = delimiter >= 0 && delimiter + 1 < mask.size() ? mask.at(delimiter + 1) : u' ';
    const auto shaped = mask.isEmpty() ? std::nullopt : InputMask(mask).apply(text);
    setText(shaped.value_or(text));
}

void LineField::keyPressEvent(QKeyEvent *event)
{
    const auto isPasted = event->matches(QKeySequence::Paste);
    const auto added = isPasted ? QGuiApplication::clipboard()->text() : event->text();
    if (!isReadOnly() && insertShaped(added)) {
        event->accept();
        return;
    }
    QLineEdit::keyPressEvent(event);
}

/// Takes a whole number in another spelling: pasted, or typed with one digit more than the mask has
/// places. \return Whether that is what was added.
bool LineField::insertShaped(const QString &added)
{
    const auto isOneMore = added.size() == 1 && added.front().isDigit() && hasAcceptableInput();
    if (inputMask().isEmpty() || (!isOneMore && added.size() < 2))
        return false;
    const auto shaped = InputMask(inputMask()).apply((isOneMore ? inPlaces() : QString()) + added);
    if (shaped)
        setText(*shaped);
    return shaped.has_value();
}

/// What stands in the places of the mask.
QString LineField::inPlaces() const
{
    QString characters;
    const auto shown = displayText();
    for (qsizetype i = 0; i < shown.size() && i < blank.size(); ++i) {
        if (blank.at(i) == emptyPlace)
            characters.append(shown.at(i));
    }
    return characters;
}

void LineField::focusInEvent(QFocusEvent *event)
{
    QLineEdit::focusInEvent(event);
    goToFirstPlace();
    // A number is typed anew rather than appended to.
    if (inputMask().isEmpty() && inputMethodHints().testFlag(Qt::ImhPreferNumbers))
        selectAll();
}

void LineField::mouseReleaseEvent(QMouseEvent *event)
{
    QLineEdit::mouseReleaseEvent(event);
    goToFirstPlace();
}

void LineField::goToFirstPlace()
{
    const auto place = displayText().indexOf(emptyPlace);
    if (!inputMask().isEmpty() && place >= 0)
        setCursorPosition(static_cast<int>(place));
}

} // namespace till
