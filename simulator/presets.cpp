#include "simulator/presets.h"

#include <QHash>

#include <algorithm>

namespace simulator {

using namespace Qt::Literals::StringLiterals;

namespace {

enum class Contact { Full, PhoneNotConfirmed, NoEmail, EmailNotConfirmed };

Preset preset(const QString &spelling, const QString &description, Contact contact = Contact::Full,
              Behaviour behaviour = Behaviour::Usual)
{
    const auto phone = normalizedPhone(spelling);
    QJsonObject customer{
        {"mobilePhone"_L1, phone},
        {"isMobilePhoneConfirmed"_L1, contact != Contact::PhoneNotConfirmed},
        {"isEmailConfirmed"_L1, contact == Contact::Full || contact == Contact::PhoneNotConfirmed},
        {"firstName"_L1, QStringLiteral("Анна")},
        {"lastName"_L1, QStringLiteral("Иванова")},
        {"birthDate"_L1, "1990-03-05"_L1},
        {"sex"_L1, "female"_L1},
        {"customFields"_L1, QJsonObject{{"consentToElectronicChecks"_L1, true}}}};
    if (contact != Contact::NoEmail)
        customer.insert("email"_L1, QStringLiteral("anna%1@example.org").arg(phone.right(2)));
    else
        customer.insert("isEmailConfirmed"_L1, false);
    return {.mobilePhone = phone,
            .description = description,
            .behaviour = behaviour,
            .customer = customer};
}

QList<Preset> makePresets()
{
    return {
        preset(QStringLiteral("79160000001"),
               QStringLiteral("known, phone and e-mail confirmed, agreed to electronic receipts")),
        preset(QStringLiteral("79160000002"), QStringLiteral("phone not confirmed"),
               Contact::PhoneNotConfirmed),
        preset(QStringLiteral("79160000003"), QStringLiteral("no e-mail"), Contact::NoEmail),
        preset(QStringLiteral("79160000004"), QStringLiteral("e-mail not confirmed"),
               Contact::EmailNotConfirmed),
        preset(QStringLiteral("+7 (916) 000-00-05"),
               QStringLiteral("registered as +7 (916) 000-00-05, found under every spelling")),
        preset(QStringLiteral("79160000006"), QStringLiteral("the letter is refused"),
               Contact::EmailNotConfirmed, Behaviour::LetterRefused),
        {.mobilePhone = QStringLiteral("79160000007"),
         .description = QStringLiteral("unknown, and the registration is refused"),
         .behaviour = Behaviour::RegistrationRefused},
        preset(QStringLiteral("79160000008"),
               QStringLiteral("an edit is accepted, the look-up that follows it fails"),
               Contact::Full, Behaviour::ReloadFails),
        preset(QStringLiteral("79160000009"), QStringLiteral("the order is refused"), Contact::Full,
               Behaviour::OrderRefused),
        preset(QStringLiteral("79160000010"), QStringLiteral("the order is answered as calculated"),
               Contact::Full, Behaviour::OrderCalculated),
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
    static const auto behaviours = [] {
        QHash<QString, Behaviour> hash;
        for (const auto &preset : presets())
            hash.insert(preset.mobilePhone, preset.behaviour);
        return hash;
    }();
    return behaviours.value(mobilePhone, Behaviour::Usual);
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
    QString digits;
    for (const auto character : phone) {
        if (character >= u'0' && character <= u'9')
            digits.append(character);
    }
    if (digits.size() == 10)
        digits.prepend(u'7');
    if (digits.size() != 11 || (digits.front() != u'7' && digits.front() != u'8'))
        return {};
    digits.front() = u'7';
    return digits;
}

} // namespace simulator
