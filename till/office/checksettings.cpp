#include "till/office/finding.h"

#include "till/core/loyaltyplugin.h"
#include "till/core/settings.h"
#include "till/core/settingscheck.h"
#include "till/office/commands.h"
#include "till/office/texts.h"

#include <host/abstractdocument.h>
#include <host/config.h>
#include <host/simpleformatter.h>

#include <utility>

namespace till {

namespace {

/// A receipt of any till.
QSharedPointer<AbstractDocument> sampleReceipt(const DocumentHeader &header)
{
    auto receipt = QSharedPointer<AbstractDocument>::create(header);
    receipt->addGoodsItem(QStringLiteral("4600"), QStringLiteral("Milk"), 89.9, 2);
    return receipt;
}

DocumentHeader sampleHeader()
{
    const auto config = Singleton<Config>::instance();
    return {1,
            config->getInt(QStringLiteral("Till:shopCode"), 1),
            config->getInt(QStringLiteral("Till:cashCode"), 1),
            1,
            11,
            QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9))};
}

/// Pairs of receipts of one chain that an identifier must tell apart.
QList<std::pair<DocumentHeader, DocumentHeader>> differentReceipts()
{
    const auto with = [](int shift, int number, int moreCash = 0, int moreShop = 0) {
        auto header = sampleHeader();
        header.shift = shift;
        header.num = number;
        header.cashCode += moreCash;
        header.shopCode += moreShop;
        return header;
    };
    return {{with(1, 11), with(1, 12)}, // the next one, in the same second
            {with(1, 11), with(11, 1)}, // digits that only run together otherwise
            {with(12, 345), with(123, 45)},
            {with(1, 11), with(1, 11, 1)}, // the register beside it
            {with(1, 11), with(1, 11, 0, 1)}};
}

QString expand(const QString &mask, const DocumentHeader &header)
{
    return SimpleFormatter().format(mask, {sampleReceipt(header)}, 0, {});
}

void checkOrderMask(const QString &mask, Findings &findings)
{
    constexpr auto check = "masks.order";
    for (const auto &[one, other] : differentReceipts()) {
        const auto id = expand(mask, one);
        if (expand(mask, other) != id)
            continue;
        findings.warn(
            check,
            Office::tr("two receipts get one identifier, %1: the service would lose one").arg(id),
            Office::tr("Put shop, register, shift and number into %1, each with its width; "
                       "docs/masks.md says how.")
                .arg(QLatin1String("LmMindbox:requestTransactionIdMask")));
        return;
    }
    findings.ok(check, Office::tr("an order's identifier: %1").arg(expand(mask, sampleHeader())));
}

void checkProductMask(const QString &mask, Findings &findings)
{
    constexpr auto check = "masks.product";
    const auto receipt = sampleReceipt(sampleHeader());
    const auto other = receipt->addGoodsItem(QStringLiteral("4601"), {}, 1, 1);
    const SimpleFormatter formatter;
    const auto id = formatter.format(mask, {receipt, receipt->getGoodsItems().first()}, 0, {});
    if (formatter.format(mask, {receipt, other}, 0, {}) == id)
        findings.warn(check, Office::tr("two products get one identifier, \"%1\"").arg(id),
                      Office::tr("Put the position's code into LmMindbox:productIdMask."));
    else
        findings.ok(check, Office::tr("a product's identifier: %1").arg(id));
}

/// \return Whether every placeholder of the mask means something.
bool checkPlaceholders(const char *check, const QString &key, Findings &findings)
{
    const auto receipt = sampleReceipt(sampleHeader());
    const auto mask = Singleton<Config>::instance()->getText(key);
    const auto complaints =
        SimpleFormatter().complaints(mask, {receipt, receipt->getGoodsItems().first()});
    if (complaints.isEmpty())
        return true;
    findings.fail(check, QStringLiteral("%1: %2").arg(key, complaints.join(QStringLiteral("; "))),
                  Office::tr("Correct the mask; docs/masks.md lists what it can hold."));
    return false;
}

void checkMask(const char *check, const QString &key,
               void (*checkMeaning)(const QString &, Findings &), Findings &findings)
{
    const auto mask = Singleton<Config>::instance()->getText(key);
    if (mask.isEmpty())
        findings.ok(check, Office::tr("%1 is not set: the usual mask").arg(key));
    else if (checkPlaceholders(check, key, findings))
        checkMeaning(mask, findings);
}

} // namespace

void checkSettingsAndMasks(Findings &findings)
{
    const auto complaints = checkSettings(*Singleton<Config>::instance());
    for (const auto &complaint : complaints) {
        const auto mend = Office::tr("Correct %1 in the settings file.").arg(complaint.key);
        if (complaint.weight == SettingComplaint::Weight::Doubtful)
            findings.warn("settings.values", textOf(complaint), mend);
        else
            findings.fail("settings.values", textOf(complaint), mend);
    }
    if (complaints.isEmpty())
        findings.ok("settings.values", Office::tr("every key is known and every value possible"));
    checkMask("masks.order", QStringLiteral("LmMindbox:requestTransactionIdMask"), checkOrderMask,
              findings);
    checkMask("masks.product", QStringLiteral("LmMindbox:productIdMask"), checkProductMask,
              findings);
}

void checkPlugin(const Settings &settings, Findings &findings)
{
    // Left to the process: what it registers stays until the end.
    static LoyaltyPlugin plugin;
    if (const auto error = plugin.load(settings.pluginFile)) {
        findings.fail("plugin", *error,
                      Office::tr("Install the plugin of this version, or correct Till:plugin."));
        return;
    }
    findings.ok("plugin", plugin.description().replace(u'\n', QStringLiteral(", ")));
}

} // namespace till
