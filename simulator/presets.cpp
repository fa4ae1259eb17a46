#include "simulator/presets.h"

#include <QRegularExpression>

#include <algorithm>

namespace simulator {

using namespace Qt::StringLiterals;

namespace {

/// A customer who has everything, but for what differs; null is for what he has not.
Preset preset(const QString &spelling, const QString &description,
              const QJsonObject &differing = {}, Behaviour behaviour = Behaviour::Usual)
{
    const auto phone = normalizedPhone(spelling);
    QJsonObject customer{{"mobilePhone"_L1, phone},
                         {"isMobilePhoneConfirmed"_L1, true},
                         {"email"_L1, u"anna%1@example.org"_s.arg(phone.right(2))},
                         {"isEmailConfirmed"_L1, true},
                         {"firstName"_L1, u"Анна"_s},
                         {"lastName"_L1, u"Иванова"_s},
                         {"birthDate"_L1, "1990-03-05"_L1},
                         {"sex"_L1, "female"_L1},
                         {"customFields"_L1, QJsonObject{{"consentToElectronicChecks"_L1, true}}}};
    for (auto member = differing.begin(); member != differing.end(); ++member)
        customer.insert(member.key(),
                        member->isNull() ? QJsonValue(QJsonValue::Undefined) : *member);
    return {.mobilePhone = phone,
            .description = description,
            .behaviour = behaviour,
            .customer = customer};
}

QList<Preset> makePresets()
{
    const QJsonObject emailNotConfirmed{{"isEmailConfirmed"_L1, false}};
    const QJsonObject noEmail{{"isEmailConfirmed"_L1, false}, {"email"_L1, QJsonValue::Null}};
    return {
        preset(u"79160000001"_s,
               u"known, phone and e-mail confirmed, agreed to electronic receipts"_s),
        preset(u"79160000002"_s, u"phone not confirmed"_s, {{"isMobilePhoneConfirmed"_L1, false}}),
        preset(u"79160000003"_s, u"no e-mail"_s, noEmail),
        preset(u"79160000004"_s, u"e-mail not confirmed"_s, emailNotConfirmed),
        preset(u"+7 (916) 000-00-05"_s,
               u"registered as +7 (916) 000-00-05, found under every spelling"_s),
        preset(u"79160000006"_s, u"the letter is refused"_s, emailNotConfirmed,
               Behaviour::LetterRefused),
        {.mobilePhone = u"79160000007"_s,
         .description = u"unknown, and the registration is refused"_s,
         .behaviour = Behaviour::RegistrationRefused},
        preset(u"79160000008"_s, u"an edit is accepted, the look-up that follows it fails"_s, {},
               Behaviour::ReloadFails),
        preset(u"79160000009"_s, u"the order is refused"_s, {}, Behaviour::OrderRefused),
        preset(u"79160000010"_s, u"the order is answered as calculated"_s, {},
               Behaviour::OrderCalculated),
    };
}

} // namespace

const QList<Preset> &presets()
{
    static const auto list = makePresets();
    return list;
}

Behaviour behaviour(const QString &mobilePhone)
{
    for (const auto &preset : presets()) {
        if (preset.mobilePhone == mobilePhone)
            return preset.behaviour;
    }
    return Behaviour::Usual;
}

bool isLetterRefused(const QString &email)
{
    return std::any_of(presets().begin(), presets().end(), [&email](const Preset &preset) {
        return preset.behaviour == Behaviour::LetterRefused &&
               preset.customer.value("email"_L1) == email;
    });
}

QString normalizedPhone(const QString &phone)
{
    static const QRegularExpression others(u"[^0-9]"_s);
    static const QRegularExpression form(u"^[78]?([0-9]{10})$"_s);
    const auto number = form.match(QString(phone).remove(others));
    return number.hasMatch() ? u'7' + number.captured(1) : QString();
}

} // namespace simulator
