#include "till/office/finding.h"

#include "till/core/loyaltyplugin.h"
#include "till/core/settings.h"
#include "till/core/settingscheck.h"
#include "till/office/commands.h"
#include "till/office/texts.h"

#include <host/abstractdocument.h>
#include <host/config.h>
#include <host/simpleformatter.h>

#include <algorithm>

namespace till {

namespace {

using Sources = QList<QSharedPointer<FormatterSource>>;

/// A mask and what it is expanded for.
struct MaskCheck
{
    const char *check;
    QString key;
    QList<Sources> samples; ///< Each must get an identifier of its own.
    QString good;           ///< With an identifier for "%1", as the next.
    QString same;
    QString mend;
};

void checkMask(const MaskCheck &mask, Findings &findings)
{
    const SimpleFormatter formatter;
    const auto text = Singleton<Config>::instance()->getText(mask.key);
    const auto complaints = formatter.complaints(text, mask.samples.first());
    QStringList ids;
    for (const auto &sample : mask.samples)
        ids.append(formatter.format(text, sample, 0, {}));
    const auto twice = std::find_if(ids.cbegin(), ids.cend(),
                                    [&ids](const QString &id) { return ids.count(id) > 1; });
    if (text.isEmpty())
        findings.ok(mask.check, Office::tr("%1 is not set: the usual mask").arg(mask.key));
    else if (!complaints.isEmpty())
        findings.fail(mask.check,
                      QStringLiteral("%1: %2").arg(mask.key, complaints.join(QLatin1String("; "))),
                      Office::tr("Correct the mask; docs/masks.md lists what it can hold."));
    else if (twice != ids.cend())
        findings.warn(mask.check, mask.same.arg(*twice), mask.mend);
    else
        findings.ok(mask.check, mask.good.arg(ids.first()));
}

/// A receipt of this till or of one beside it.
QSharedPointer<AbstractDocument> receiptOf(int shift, int number, int moreCash = 0,
                                           int moreShop = 0)
{
    constexpr int sale = 1;
    const auto *const config = Singleton<Config>::instance();
    return QSharedPointer<AbstractDocument>::create(
        DocumentHeader{sale, config->getInt(QStringLiteral("Till:shopCode"), 1) + moreShop,
                       config->getInt(QStringLiteral("Till:cashCode"), 1) + moreCash, shift, number,
                       QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9))});
}

void checkMasks(Findings &findings)
{
    const auto orderKey = QStringLiteral("LmMindbox:requestTransactionIdMask");
    checkMask({"masks.order",
               orderKey,
               {{receiptOf(1, 11)},
                {receiptOf(1, 12)}, // the next one, in the same second
                {receiptOf(11, 1)}, // digits that only run together otherwise
                {receiptOf(12, 345)},
                {receiptOf(123, 45)},
                {receiptOf(1, 11, 1)}, // the register beside it
                {receiptOf(1, 11, 0, 1)}},
               Office::tr("an order's identifier: %1"),
               Office::tr("two receipts get one identifier, %1: the service would lose one"),
               Office::tr("Put shop, register, shift and number into %1, each with its width; "
                          "docs/masks.md says how.")
                   .arg(orderKey)},
              findings);
    const auto receipt = receiptOf(1, 11);
    checkMask({"masks.product",
               QStringLiteral("LmMindbox:productIdMask"),
               {{receipt, receipt->addGoodsItem(QStringLiteral("4600"), {}, 1, 1)},
                {receipt, receipt->addGoodsItem(QStringLiteral("4601"), {}, 1, 1)}},
               Office::tr("a product's identifier: %1"),
               Office::tr("two products get one identifier, \"%1\""),
               Office::tr("Put the position's code into LmMindbox:productIdMask.")},
              findings);
}

} // namespace

void checkSettingsAndMasks(Findings &findings)
{
    const auto complaints = checkSettings(*Singleton<Config>::instance());
    using Weight = SettingComplaint::Weight;
    for (const auto &complaint : complaints)
        findings.add(Finding::levelOf(complaint.weight != Weight::Doubtful, true),
                     "settings.values", textOf(complaint),
                     Office::tr("Correct %1 in the settings file.").arg(complaint.key));
    if (complaints.isEmpty())
        findings.ok("settings.values", Office::tr("every key is known and every value possible"));
    checkMasks(findings);
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
