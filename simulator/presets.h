#pragma once

#include <QJsonObject>
#include <QList>
#include <QString>

namespace simulator {

/// Where a preset customer differs from one that the service serves as usual.
enum class Behaviour {
    Usual,
    LetterRefused,
    RegistrationRefused, ///< Not a customer: a phone that never becomes one.
    ReloadFails,         ///< The look-up that follows an accepted edit is answered with an error.
    OrderRefused,        ///< The order is answered as not processed and is not kept.
    OrderCalculated      ///< The order is kept and answered as calculated, not as processed.
};

/// A phone that the service treats in a way of its own from the start.
struct Preset
{
    QString mobilePhone; ///< As normalizedPhone spells it.
    QString description; ///< One line for the documentation.
    Behaviour behaviour = Behaviour::Usual;
    QJsonObject customer{}; ///< As in the answers, without processing status; empty for none.
};

/// The preset phones in the order of the documentation.
const QList<Preset> &presets();
/// Behaviour for a phone in its normal form; `Behaviour::Usual` for one that is not preset.
Behaviour behaviour(const QString &mobilePhone);

/// Whether letters to this address of a preset customer are refused.
bool isLetterRefused(const QString &email);

/// The phone as the service spells it: eleven digits from 7. Ten digits get the 7, a leading 8
/// becomes 7, anything between the digits is dropped; empty when that leaves no such number.
QString normalizedPhone(const QString &phone);

} // namespace simulator
