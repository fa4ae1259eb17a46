#pragma once

#include "simulator/bodycheck.h"

#include <array>

/// The bodies of the operations, as the service expects them.
namespace simulator::shapes {

using namespace Qt::StringLiterals;

inline constexpr Member pointOfContact{"pointOfContact"_L1, kinds::filledText};

inline constexpr auto customerPhone = std::to_array<Member>({{"mobilePhone"_L1, kinds::text}});
inline constexpr auto customerEmail = std::to_array<Member>({{"email"_L1, kinds::text}});
inline constexpr auto customerData = std::to_array<Member>({
    {"mobilePhone"_L1, kinds::text},
    {"sex"_L1, kinds::sex},
    {"firstName"_L1, kinds::text},
    {"birthDate"_L1, kinds::date, Presence::Optional},
    {"email"_L1, kinds::email, Presence::Optional},
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
                           {"authentificationCode"_L1, kinds::text}});

inline constexpr auto smsCode = std::to_array<Member>({{"code"_L1, kinds::text}});
inline constexpr auto confirmation = std::to_array<Member>(
    {pointOfContact, nested("customer"_L1, customerPhone), nested("smsConfirmation"_L1, smsCode)});

inline constexpr auto product = std::to_array<Member>({{"ids"_L1, kinds::ids}});
inline constexpr auto promotionIds = std::to_array<Member>({{"externalId"_L1, kinds::identifier}});
inline constexpr auto promotion = std::to_array<Member>({nested("ids"_L1, promotionIds)});
inline constexpr auto requestedPromotion =
    std::to_array<Member>({{"type"_L1, kinds::discount},
                           {"amount"_L1, kinds::number},
                           nested("promotion"_L1, promotion)});

inline constexpr Member basePricePerItem{"basePricePerItem"_L1, kinds::number};
inline constexpr Member quantity{"quantity"_L1, kinds::number};
inline constexpr Member lineNumber{"lineNumber"_L1, kinds::integer};
inline constexpr Member lineId{"lineId"_L1, kinds::integer};
inline constexpr Member lineProduct = nested("product"_L1, product);
inline constexpr Member requestedPromotions{"requestedPromotions"_L1, kinds::objects,
                                            Presence::Optional, requestedPromotion};

inline constexpr auto newOrderLine =
    std::to_array<Member>({basePricePerItem,
                           {"discountedPricePerLine"_L1, kinds::number},
                           quantity,
                           lineNumber,
                           lineId,
                           lineProduct,
                           requestedPromotions});
inline constexpr auto newOrder =
    std::to_array<Member>({nested("lines"_L1, newOrderLine, kinds::lines),
                           {"totalPrice"_L1, kinds::number},
                           {"ids"_L1, kinds::ids}});
inline constexpr auto authorizedOrder =
    std::to_array<Member>({pointOfContact,
                           nested("customer"_L1, customerPhone),
                           nested("order"_L1, newOrder),
                           {"executionDateTimeUtc"_L1, kinds::dateTime, Presence::Optional}});

inline constexpr auto changedOrderLine =
    std::to_array<Member>({basePricePerItem,
                           {"discountedPriceOfLine"_L1, kinds::number},
                           quantity,
                           lineNumber,
                           lineId,
                           lineProduct,
                           requestedPromotions,
                           {"status"_L1, kinds::filledText}});
inline constexpr auto changedOrder = std::to_array<Member>(
    {nested("lines"_L1, changedOrderLine, kinds::lines), {"ids"_L1, kinds::ids}});
inline constexpr auto statusChange =
    std::to_array<Member>({pointOfContact, nested("order"_L1, changedOrder)});

} // namespace simulator::shapes
