#include "till/office/finding.h"

#include "till/core/loyaltyplugin.h"
#include "till/core/settings.h"
#include "till/core/settingtable.h"
#include "till/office/answer.h"

#include <host/abstractdocument.h>
#include <host/simpleformatter.h>

#include <QFile>
#include <QRegularExpression>

#include <algorithm>
#include <cstring>
#include <elf.h>
#include <link.h>

using namespace Qt::StringLiterals;

namespace till {

namespace {

using enum Finding::Level;
using Sources = QList<QSharedPointer<FormatterSource>>;

/// The numbers wider than their placeholder, which then run into the next placeholder.
QStringList tooWide(const QString &mask, const Sources &highest)
{
    static const QRegularExpression number(uR"((\)?)%\(([a-zA-Z.]+)\[0(\d+)d\]\)(?=(%?)))"_s);
    QStringList fields;
    for (const auto &match : number.globalMatch(mask)) {
        const auto value =
            SimpleFormatter().format(u"%(%1)"_s.arg(match.captured(2)), highest, 0, {});
        const auto isAlone = match.captured(1).isEmpty() && match.captured(4).isEmpty();
        if (!isAlone && value.size() > match.captured(3).toInt())
            fields.append(u"%1 %2"_s.arg(match.captured(2), value));
    }
    return fields;
}

/// Each sample must get an identifier of its own. The last sample has the highest numbers.
void checkMask(const char *check, QLatin1StringView key, const QList<Sources> &samples,
               Findings &findings)
{
    const SimpleFormatter formatter;
    const auto mask = settingText(key);
    const auto complaints = formatter.complaints(mask, samples.first());
    QStringList ids;
    for (const auto &sample : samples)
        ids.append(formatter.format(mask, sample, 0, {}));
    const auto twice =
        std::ranges::find_if(ids, [&ids](const QString &id) { return ids.count(id) > 1; });
    const auto wide = tooWide(mask, samples.last());
    auto level = Warning;
    auto found = u"%1: %2"_s.arg(key, ids.first());
    if (!complaints.isEmpty()) {
        level = Failed;
        found = Office::tr("the mask does not fit: \"%1\"").arg(complaints.join("; "_L1));
    } else if (twice != ids.end()) {
        found = Office::tr("two share the identifier \"%1\": the service would lose one of them")
                    .arg(*twice);
    } else if (!wide.isEmpty()) {
        found = Office::tr("wider than the mask, %1, in \"%2\": two may share an identifier")
                    .arg(wide.join(", "_L1), ids.last());
    } else {
        level = Ok;
    }
    findings.add(level, check, found, key, Office::tr("Correct %1: see docs/masks.md."));
}

/// A receipt of this till or of a neighbour.
QSharedPointer<AbstractDocument> receiptOf(int shift, int number, int moreCash = 0,
                                           int moreShop = 0)
{
    return QSharedPointer<AbstractDocument>::create(
        DocumentHeader{DocumentHeader::sale, settingNumber("Till:shopCode"_L1) + moreShop,
                       settingNumber("Till:cashCode"_L1) + moreCash, shift, number,
                       QDateTime(QDate(2026, 3, 5), QTime(14, 7, 9))});
}

/// Whether the file lacks its section table, which comes last in a module.
bool isCutOff(const QString &module)
{
    QFile file(module);
    ElfW(Ehdr) head{};
    return file.open(QIODevice::ReadOnly) &&
           file.read(reinterpret_cast<char *>(&head), sizeof head) == sizeof head &&
           std::memcmp(head.e_ident, ELFMAG, SELFMAG) == 0 &&
           static_cast<quint64>(file.size()) <
               head.e_shoff + quint64{head.e_shentsize} * head.e_shnum;
}

} // namespace

void checkMasks(Findings &findings)
{
    constexpr int highestShift = 9'999;
    constexpr int highestNumber = 9'999'999;
    checkMask("masks.order", "LmMindbox:requestTransactionIdMask"_L1,
              {{receiptOf(1, 11)},
               {receiptOf(1, 12)}, // the next receipt, in the same second
               {receiptOf(11, 1)}, // the same digits, split in another place
               {receiptOf(12, 345)},
               {receiptOf(123, 45)},
               {receiptOf(1, 11, 1)}, // the register beside it
               {receiptOf(1, 11, 0, 1)},
               {receiptOf(highestShift, highestNumber)}},
              findings);
    const auto receipt = receiptOf(1, 11);
    checkMask("masks.product", "LmMindbox:productIdMask"_L1,
              {{receipt, receipt->addGoodsItem(u"4600"_s, {}, 1, 1)},
               {receipt, receipt->addGoodsItem(u"4601"_s, {}, 1, 1)}},
              findings);
}

void checkPlugin(const Settings &settings, Findings &findings)
{
    // Static, because its registered loggers and types stay until the process ends.
    static LoyaltyPlugin plugin;
    const auto key = u"Till:plugin"_s;
    if (findings.hasFailed(key))
        return;
    const auto mend = Office::tr("Install the plugin of this version, or correct %1.");
    if (isCutOff(settings.pluginFile))
        findings.add(Failed, "plugin",
                     Office::tr("%1: the file is cut off").arg(settings.pluginFile), key, mend);
    else if (const auto loaded = plugin.load(settings.pluginFile); !loaded)
        findings.add(Failed, "plugin", Office::tr("it cannot be used: \"%1\"").arg(loaded.error()),
                     key, mend);
    else
        findings.ok("plugin", plugin.description());
}

} // namespace till
