#pragma once

namespace control {

/// Something the cashier triggered at the till.
class Action
{
public:
    static constexpr int noType = 0;
    static constexpr int editCustomer = 170; ///< Lets the cashier edit the receipt's customer.

    /// An action of no type: nothing at the till triggers one.
    Action() = default;
    /// An action of one of the till's type codes.
    explicit Action(int type)
        : type(type)
    {}

    /// The action's type code.
    int getType() const { return type; }

private:
    int type = noType;
};

} // namespace control
