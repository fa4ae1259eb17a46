#pragma once

#include <QDate>
#include <QString>

namespace lmmindbox {

/// The date spelled "yyyy-MM-dd", the form of the service's answers and of the record kept with
/// the receipt; invalid for any other text.
QDate readIsoDate(const QString &text);

} // namespace lmmindbox
