#pragma once

#include <QLabel>
#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace till {

/// Sets the widget's object name, for the style and the tests, and its name for a screen reader.
template<typename Widget>
Widget *named(Widget *widget, const QString &name, const QString &spoken = {})
{
    widget->setObjectName(name);
    widget->setAccessibleName(spoken);
    return widget;
}

/// Makes a label of plain text: text from a service or a file must not be taken for HTML.
inline QLabel *makeLabel(QWidget *parent, const QString &name, const QString &text = {})
{
    auto *const label = named(new QLabel(parent), name);
    label->setTextFormat(Qt::PlainText);
    label->setText(text);
    return label;
}

/// Sets a property that the style sheet uses.
inline void mark(QWidget *widget, const char *property, const QVariant &value)
{
    if (widget->property(property) == value)
        return;
    widget->setProperty(property, value);
    widget->style()->polish(widget);
}

} // namespace till
