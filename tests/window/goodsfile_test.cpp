#include "till/window/goodsfile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

using Problem = till::GoodsFile::Problem;

class Goods : public testing::Test
{
protected:
    QList<till::GoodsFile::BadLine> load(const char *text)
    {
        QFile file(directory.filePath(QStringLiteral("goods.csv")));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        return goods.load(file.fileName());
    }

    QTemporaryDir directory;
    till::GoodsFile goods;
};

TEST_F(Goods, AreReadInAnyOrderOfColumnsWithQuotesAndDecimalCommas)
{
    EXPECT_TRUE(load("\xEF\xBB\xBFPrice;unit;Name;code\r\n\r\n"
                     "89,90;pc;\"Milk; \"\"fresh\"\"\";4600\r\n310;kg;Cheese;4602")
                    .isEmpty());
    EXPECT_EQ(goods.find(QStringLiteral("4600"))->name, QStringLiteral("Milk; \"fresh\""));
    EXPECT_EQ(goods.find(QStringLiteral("4600"))->price, 89.9);
    EXPECT_EQ(goods.find(QStringLiteral("4602"))->price, 310);
    EXPECT_FALSE(goods.find(QStringLiteral("46")));
}

TEST_F(Goods, TellTheirBadLinesByNumberAndKeepTheOthers)
{
    const auto bad = load("code,name,price\n1,Milk,1.5\n,Bread,2\n3,,2\n4,Tea,2.555\n"
                          "1,Other milk,9\n6,\"Jam,7\n7,\xFF,7\n8,Salt,-1\n9,Sugar,7\n");
    const QList<till::GoodsFile::BadLine> expected = {
        {3, Problem::NoCode},
        {4, Problem::NoName},
        {5, Problem::BadPrice, QStringLiteral("2.555")},
        {6, Problem::CodeTwice, QStringLiteral("1")},
        {7, Problem::NotText},
        {8, Problem::NotText},
        {9, Problem::BadPrice, QStringLiteral("-1")}};
    EXPECT_TRUE(bad == expected);
    EXPECT_EQ(goods.size(), 2);
    EXPECT_EQ(goods.find(QStringLiteral("1"))->price, 1.5);
    EXPECT_EQ(load("code,name\n1,Milk\n").value(0).text, QStringLiteral("price"));
    EXPECT_EQ(goods.load(QStringLiteral("/nowhere")).value(0).problem, Problem::Unreadable);
}

TEST_F(Goods, AreEnteredAsACodeOrAsAQuantityAndACode)
{
    const struct
    {
        const char *typed;
        const char *code; ///< Empty when nothing is sold.
        double quantity;
    } cases[] = {{"4601", "4601", 1},      {" 3*4601 ", "4601", 3}, {"0,350*46", "46", 0.35},
                 {"0.350*46", "46", 0.35}, {"0*46", "", 0},         {"3*", "", 0},
                 {"-1*46", "", 0},         {"2*3*46", "", 0},       {"1,2345*46", "", 0}};
    for (const auto &[typed, code, quantity] : cases) {
        const auto entry = till::parseGoodsEntry(QLatin1String(typed));
        EXPECT_EQ(entry.has_value(), *code != '\0') << typed;
        if (entry) {
            EXPECT_EQ(entry->code, QLatin1String(code)) << typed;
            EXPECT_EQ(entry->quantity, quantity) << typed;
        }
    }
}

} // namespace
