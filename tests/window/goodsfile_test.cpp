#include "till/window/goodsfile.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace {

class Goods : public testing::Test
{
protected:
    const QStringList &load(const char *text)
    {
        QFile file(directory.filePath(u"goods.csv"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
        file.close();
        read = till::readGoods(file.fileName());
        return read.problems;
    }

    QTemporaryDir directory;
    till::GoodsFile read;
};

TEST_F(Goods, AreReadInAnyOrderOfColumnsWithQuotesAndDecimalCommas)
{
    EXPECT_TRUE(load("\xEF\xBB\xBFPrice;unit;Name;code\r\n\r\n"
                     "89,90;pc;\"Milk; \"\"fresh\"\"\";4600\r\n310;kg;Cheese;4602")
                    .isEmpty());
    EXPECT_EQ(read.goods[u"4600"_s].name, u"Milk; \"fresh\""_s);
    EXPECT_EQ(read.goods[u"4600"_s].price, 89.9);
    EXPECT_EQ(read.goods[u"4602"_s].price, 310);
    EXPECT_FALSE(read.goods.contains(u"46"_s));
}

TEST_F(Goods, TellTheirBadLinesByNumberAndKeepTheOthers)
{
    const auto bad = load("code,name,price\n1,Milk,1.5\n,Bread,2\n3,,2\n4,Tea,2.555\n"
                          "1,Other milk,9\n6,\"Jam,7\n7,\xFF,7\n8,Salt,-1\n9,Sugar,7\n");
    const std::pair<int, const char *> expected[] = {{3, ""}, {4, ""},      {5, "2.555"}, {6, "1"},
                                                     {7, ""}, {8, "UTF-8"}, {9, "-1"}};
    ASSERT_EQ(bad.size(), std::size(expected));
    for (int i = 0; i < bad.size(); ++i) {
        const auto &[line, word] = expected[i];
        EXPECT_TRUE(bad[i].contains(u" %1: "_s.arg(line))) << bad[i].toStdString();
        EXPECT_TRUE(bad[i].contains(QLatin1String(word))) << bad[i].toStdString();
    }
    EXPECT_EQ(read.goods.size(), 2);
    EXPECT_EQ(read.goods[u"1"_s].price, 1.5);
    EXPECT_TRUE(load("code,name\n1,Milk\n").value(0).contains(u"price"_s));
    EXPECT_EQ(till::readGoods(u"/nowhere"_s).problems.size(), 1);
}

TEST_F(Goods, AreEnteredAsACodeOrAsAQuantityAndACode)
{
    const struct
    {
        const char *typed;
        const char *code; ///< Empty when there is no entry.
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
