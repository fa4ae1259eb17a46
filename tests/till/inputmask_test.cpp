#include "till/core/inputmask.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

TEST(InputMask, BringsWhatWasTypedIntoItsShapeOrRefusesIt)
{
    constexpr auto phone = "+7(999)-999-99-99;_";
    constexpr auto spelled = "+7(916)-123-45-67";
    constexpr auto refused = "refused";
    const struct
    {
        const char *mask;
        const char *typed;
        const char *result;
    } cases[] = {
        {phone, "9161234567", spelled},
        {phone, "+79161234567", spelled},
        {phone, "79161234567", spelled},
        {phone, "89161234567", spelled},
        {phone, " +8 (916) 123-45-67 ", spelled},
        {phone, spelled, spelled},
        {phone, "8005553535", "+7(800)-555-35-35"},
        {phone, "7161234567", "+7(716)-123-45-67"},
        {phone, "", ""},
        {phone, "916123456", refused},
        {phone, "+7916123456", refused},
        {phone, "91612345678", refused},
        {phone, "59161234567", refused},
        {phone, "916123456x", refused},
        {"990", "12", "12"},
        {"AN-99n", "Яж 12", "Яж-12"},
        {"AN-99n", "1ж 12", refused},
        {"", " any text ", "any text"},
    };
    for (const auto &[mask, typed, result] : cases) {
        const auto shaped =
            till::InputMask(QString::fromUtf8(mask)).apply(QString::fromUtf8(typed));
        EXPECT_EQ(shaped.value_or(QString::fromUtf8(refused)).toStdString(), result)
            << mask << " <- " << typed;
    }
    EXPECT_EQ(till::InputMask(QString::fromUtf8(phone)).outline(), u"+7(___)-___-__-__"_s);
}

} // namespace
