#include "model/customer.h"

namespace lmmindbox {

bool Customer::found() const
{
    return processingStatus == ProcessingStatus::Found;
}

bool Customer::checkStatus(const QSet<ProcessingStatus> &statuses) const
{
    return statuses.contains(processingStatus);
}

namespace {
// Variants find the types by these names.
[[maybe_unused]] const int customerTypeId = qRegisterMetaType<Customer>("lmmindbox::Customer");
} // namespace

} // namespace lmmindbox
