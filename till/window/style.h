#pragma once

#include <QString>

class QSize;
class QWidget;

namespace till {

/// The scale for a window of that size; 1 for the sizes of window.qss. Grows and shrinks with the
/// window.
double unitFor(const QSize &window);
/// Whether a window of that size is too small for the goods' pad.
bool foldsPad(const QSize &window);

/// Sets the colours of window.qss instead of the desktop's.
void installPalette();
/// Applies the style to the window at its present size.
void dress(QWidget &window);

} // namespace till
