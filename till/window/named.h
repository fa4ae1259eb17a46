#pragma once

#include <QStyle>
#include <QVariant>
#include <QWidget>

namespace till {

/// Gives the widget the name that the style and the tests know it by, and the one that a screen
/// reader says.
template<typename Widget>
Widget *named(Widget *widget, const QString &name, const QString &spoken = {})
{
    widget->setObjectName(name);
    widget->setAccessibleName(spoken);
    return widget;
}

/// Sets a property that the style looks at.
inline void mark(QWidget *widget, const char *property, const QVariant &value)
{
    widget->setProperty(property, value);
    widget->style()->polish(widget);
}

} // namespace till
