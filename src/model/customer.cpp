#include "model/customer.h"

namespace lmmindbox {

QDate Customer::readBirthDate(const QString &text)
{
    // ISODate is several times faster than a pattern, but it also accepts a time after the date,
    // and other separators.
    const auto date = QDate::fromString(text, Qt::ISODate);
    return date.toString(Qt::ISODate) == text ? date : QDate();
}

bool Customer::found() const
{
    return processingStatus == ProcessingStatus::Found;
}

bool Customer::checkStatus(const QSet<ProcessingStatus> &statuses) const
{
    return statuses.contains(processingStatus);
}

namespace {
// Registers the type's name for variants.
[[maybe_unused]] const int customerTypeId = qRegisterMetaType<Customer>("lmmindbox::Customer");
} // namespace

} // namespace lmmindbox
