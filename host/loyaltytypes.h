#pragma once

#include "host/tr.h"

#include <QString>

/// How a card number reached the till.
enum class ECardNumberType {
    Typed = 0,
    Scanned = 1,
    MagneticStripe = 2,
};

/// What a card is at a loyalty system.
enum class CardMode {
    Unknown = 0,
    Discount = 1,
    Bonus = 2,
};

/// Switches of a loyalty system.
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

/// What a loyalty system read out of an input.
struct CardNumberAnswer
{
    bool success = false;
    QString number;
    tr::Tr message; ///< Why there is no number.
};

/// Points that a receipt earns or spends.
struct BonusRecord
{
    int posnum = 0; ///< 0 for the whole receipt.
    double points = 0;
};

/// A text of a loyalty system to print behind the receipt.
struct Slip
{
    QString text;
};

} // namespace loyalty
