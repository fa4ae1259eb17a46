#pragma once

#include <QHash>
#include <QString>
#include <QStringList>

#include <optional>

namespace till {

/// Goods with a code.
struct Goods
{
    QString code;
    QString name;
    double price = 0;
};

/// The shop's goods, from a file of its back office.
struct GoodsFile
{
    QHash<QString, Goods> goods; ///< By their codes.
    QStringList problems;        ///< One for each skipped line, for the cashier.
};

/// Reads a CSV file in UTF-8, separated by commas or semicolons. Its head line names the columns
/// `code`, `name` and `price` in any order; other columns are ignored. Texts may be quoted, and a
/// price may have a decimal comma. Skips bad lines.
GoodsFile readGoods(const QString &path);

/// A code and a quantity, typed or scanned to sell goods.
struct GoodsEntry
{
    QString code;
    double quantity = 1;
};

/// Reads a code, alone or behind a quantity: "4601", "3*4601", "0,350*4602". Nothing for a missing
/// code or a bad quantity.
std::optional<GoodsEntry> parseGoodsEntry(const QString &typed);

} // namespace till
