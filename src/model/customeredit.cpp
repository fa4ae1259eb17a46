#include "model/customeredit.h"

namespace lmmindbox {

QString CustomerEdit::toString() const
{
    const auto sexText = sex == Client::Sex::Male ? QStringLiteral("муж") : QStringLiteral("жен");
    return QStringLiteral("имя: %1; телефон: %2; пол: %3; email: %4")
        .arg(name)
        .arg(phone)
        .arg(sexText)
        .arg(email);
}

namespace {
// Registers the type's name for variants.
[[maybe_unused]] const int customerEditTypeId =
    qRegisterMetaType<CustomerEdit>("lmmindbox::CustomerEdit");
[[maybe_unused]] const int sexTypeId = qRegisterMetaType<Client::Sex>("Client::Sex");
} // namespace

} // namespace lmmindbox
