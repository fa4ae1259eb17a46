#pragma once

#include "host/tr.h"

#include <QString>

/// The way in which a card number reached the till.
enum class ECardNumberType {
    Typed = 0,
    Scanned = 1,
    MagneticStripe = 2,
};

/// The kind of a card at a loyalty system.
enum class CardMode {
    Unknown = 0,
    Discount = 1,
    Bonus = 2,
};

/// Options of a loyalty system.
enum class LoyaltySystemOption {
    EarnsPoints = 1,
    SpendsPoints = 2,
    Offline = 4,
    IdentifiesByPhone = 8,
};

namespace loyalty {

/// Raw input that may hold a card number.
struct CardNumberInputData
{
    /// Text typed by the cashier.
    static constexpr int typed = 1;

    int kind = typed;
    QString text;
};

/// The card number that a loyalty system found in an input.
struct CardNumberAnswer
{
    bool success = false;
    QString number;
    tr::Tr message; ///< The reason when there is no number.
};

/// Points that a receipt earns or spends.
struct BonusRecord
{
    int posnum = 0; ///< 0 for the whole receipt.
    double points = 0;
};

/// A loyalty system's text to print after the receipt.
struct Slip
{
    QString text;
};

} // namespace loyalty
