#pragma once

#include <QHash>
#include <QList>
#include <QString>

#include <optional>

namespace till {

/// What can be sold under a code.
struct Goods
{
    QString code;
    QString name;
    double price = 0;
};

/// The goods of the shop by their codes, from a file of its back office.
///
/// The file is CSV in UTF-8, separated by commas or semicolons. Its head line names the columns:
/// `code`, `name` and `price` in any order, others are passed over. Texts may stand in quotation
/// marks, a price may have a decimal comma.
class GoodsFile
{
public:
    enum class Problem {
        Unreadable, ///< The file: `BadLine::text` has the system's reason.
        NoHead,     ///< The first line lacks a column: `BadLine::text`.
        NotText,    ///< The line is not UTF-8 or its quotation marks do not pair.
        NoCode,
        NoName,
        BadPrice,  ///< `BadLine::text` is no price from 0 to 9999999.99.
        CodeTwice, ///< An earlier line has the code `BadLine::text`; that line counts.
    };
    struct BadLine
    {
        int line = 0; ///< From 1; 0 for the file itself.
        Problem problem = Problem::Unreadable;
        QString text = {};

        bool operator==(const BadLine &other) const = default;
    };

    /// Reads the file. Its good lines count, whatever the others hold. \return The lines that do
    /// not count.
    QList<BadLine> load(const QString &file);

    std::optional<Goods> find(const QString &code) const;
    qsizetype size() const { return goods.size(); }

private:
    struct Columns
    {
        QChar separator = u',';
        qsizetype code = -1;
        qsizetype name = -1;
        qsizetype price = -1;
    };

    static std::optional<QString> missingColumn(const QString &head, Columns &columns);
    std::optional<BadLine> take(const QString &line, const Columns &columns);

    QHash<QString, Goods> goods;
};

/// What was typed or scanned to sell goods.
struct GoodsEntry
{
    QString code;
    double quantity = 1;
};

/// Reads a code, alone or behind a quantity: "4601", "3*4601", "0,350*4602". Nothing for a text
/// without a code or with a quantity that is none.
std::optional<GoodsEntry> parseGoodsEntry(const QString &typed);

} // namespace till
