#pragma once

#include "simulator/bodycheck.h"

#include <array>

/// The bodies of the operations, as the service expects them.
namespace simulator::shapes {

using namespace Qt::Literals::StringLiterals;

inline constexpr Member pointOfContact{"pointOfContact"_L1, Kind::FilledText};

inline constexpr auto customerPhone = std::to_array<Member>({{"mobilePhone"_L1, Kind::Text}});
inline constexpr auto customerEmail = std::to_array<Member>({{"email"_L1, Kind::Text}});
inline constexpr auto customerData = std::to_array<Member>({
    {"mobilePhone"_L1, Kind::Text},
    {"sex"_L1, Kind::Sex},
    {"firstName"_L1, Kind::Text},
    {"birthDate"_L1, Kind::Date, Presence::Optional},
    {"email"_L1, Kind::Email, Presence::Optional},
});

inline constexpr auto phone =
    std::to_array<Member>({pointOfContact, nested("customer"_L1, customerPhone)});
inline constexpr auto email =
    std::to_array<Member>({pointOfContact, nested("customer"_L1, customerEmail)});
inline constexpr auto customer =
    std::to_array<Member>({pointOfContact, nested("customer"_L1, customerData)});

inline constexpr auto authorizationCode =
    std::to_array<Member>({pointOfContact,
                           nested("customer"_L1, customerPhone),
                           {"authentificationCode"_L1, Kind::Text}});

inline constexpr auto smsCode = std::to_array<Member>({{"code"_L1, Kind::Text}});
inline constexpr auto confirmation = std::to_array<Member>(
    {pointOfContact, nested("customer"_L1, customerPhone), nested("smsConfirmation"_L1, smsCode)});

inline constexpr auto product = std::to_array<Member>({{"ids"_L1, Kind::Ids}});
inline constexpr auto promotionIds = std::to_array<Member>({{"externalId"_L1, Kind::Identifier}});
inline constexpr auto promotion = std::to_array<Member>({nested("ids"_L1, promotionIds)});
inline constexpr auto requestedPromotion = std::to_array<Member>(
    {{"type"_L1, Kind::Discount}, {"amount"_L1, Kind::Number}, nested("promotion"_L1, promotion)});

inline constexpr Member basePricePerItem{"basePricePerItem"_L1, Kind::Number};
inline constexpr Member quantity{"quantity"_L1, Kind::Number};
inline constexpr Member lineNumber{"lineNumber"_L1, Kind::Integer};
inline constexpr Member lineId{"lineId"_L1, Kind::Integer};
inline constexpr Member lineProduct = nested("product"_L1, product);
inline constexpr Member requestedPromotions{"requestedPromotions"_L1, Kind::Array,
                                            Presence::Optional, requestedPromotion};

inline constexpr auto newOrderLine =
    std::to_array<Member>({basePricePerItem,
                           {"discountedPricePerLine"_L1, Kind::Number},
                           quantity,
                           lineNumber,
                           lineId,
                           lineProduct,
                           requestedPromotions});
inline constexpr auto newOrder =
    std::to_array<Member>({nested("lines"_L1, newOrderLine, Kind::Lines),
                           {"totalPrice"_L1, Kind::Number},
                           {"ids"_L1, Kind::Ids}});
inline constexpr auto authorizedOrder =
    std::to_array<Member>({pointOfContact,
                           nested("customer"_L1, customerPhone),
                           nested("order"_L1, newOrder),
                           {"executionDateTimeUtc"_L1, Kind::DateTime, Presence::Optional}});

inline constexpr auto changedOrderLine =
    std::to_array<Member>({basePricePerItem,
                           {"discountedPriceOfLine"_L1, Kind::Number},
                           quantity,
                           lineNumber,
                           lineId,
                           lineProduct,
                           requestedPromotions,
                           {"status"_L1, Kind::FilledText}});
inline constexpr auto changedOrder = std::to_array<Member>(
    {nested("lines"_L1, changedOrderLine, Kind::Lines), {"ids"_L1, Kind::Ids}});
inline constexpr auto statusChange =
    std::to_array<Member>({pointOfContact, nested("order"_L1, changedOrder)});

} // namespace simulator::shapes
