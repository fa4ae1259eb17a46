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
// The names are part of the contract: variants find the types by them.
[[maybe_unused]] const int customerTypeId = qRegisterMetaType<Customer>("lmmindbox::Customer");
} // namespace

} // namespace lmmindbox
