#include "till/office/commands.h"

#include "till/core/settingscheck.h"
#include "till/office/texts.h"

namespace till {

namespace {

QString reasonOf(const SettingComplaint &complaint)
{
    using Kind = SettingComplaint::Kind;
    switch (complaint.kind) {
    case Kind::UnknownKey:
        return complaint.expected.isEmpty()
                   ? Office::tr("unknown key")
                   : Office::tr("unknown key, did you mean %1?").arg(complaint.expected);
    case Kind::Missing:
        return Office::tr("not set; the loyalty system does not work without it");
    case Kind::NotNumber:
        return Office::tr("expected a whole number, %1").arg(complaint.expected);
    case Kind::NotOneOf:
        return Office::tr("expected one of %1").arg(complaint.expected);
    case Kind::NoUrl:
        return Office::tr("expected a URL such as %1").arg(complaint.expected);
    case Kind::OtherPath:
        return Office::tr("expected the path %1").arg(complaint.expected);
    case Kind::KeyInClear:
        return Office::tr("the secret key goes unencrypted, expected %1").arg(complaint.expected);
    case Kind::Quoted:
        return Office::tr("the quotation marks are part of the value, expected none");
    case Kind::HomeSign:
        return Office::tr("\"~\" means nothing here, expected the whole path");
    case Kind::NoFile:
        return Office::tr("expected a file");
    case Kind::BelowOther:
        return Office::tr("expected at least the value of %1").arg(complaint.expected);
    case Kind::TakenAsOne:
        return Office::tr("not set, taken as 1; two such tills give one number to two orders");
    }
    return {};
}

} // namespace

QString textOf(const SettingComplaint &complaint)
{
    const auto setting =
        complaint.value.isEmpty() ? complaint.key : complaint.key + u'=' + complaint.value;
    return QStringLiteral("%1: %2").arg(setting, reasonOf(complaint));
}

} // namespace till
