#pragma once

namespace control {

/// Something the cashier triggered at the till.
class Action
{
public:
    static constexpr int noType = 0;
    static constexpr int editCustomer = 170; ///< Lets the cashier edit the receipt's customer.

    /// An action without a type; the till never triggers it.
    Action() = default;
    /// An action with one of the till's type codes.
    explicit Action(int type)
        : type(type)
    {}

    /// The action's type code.
    int getType() const { return type; }

private:
    int type = noType;
};

} // namespace control
