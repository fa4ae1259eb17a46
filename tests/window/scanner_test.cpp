#include "cashier.h"

#include "till/window/receiptmodel.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QLineEdit>
#include <QTableView>

namespace {

using namespace Qt::StringLiterals;
using till::ReceiptModel;

TEST_F(WindowTest, SellsWhatIsScannedAndTellsItFromAHand)
{
    openWindow();
    const struct
    {
        const char *code;
        Qt::Key end;
        int gap;
        const char *line; ///< The text left in the line for goods.
        int rows;
    } cases[] = {{"4600", Qt::Key_Return, -1, "", 1},
                 {"4600", Qt::Key_Tab, -1, "", 2},
                 {"4600", Qt::Key_Tab, 260, "4600", 2}, // a hand, whose Tab does nothing
                 {"460", Qt::Key_Tab, -1, "4600460", 2}};
    for (const auto &[code, end, gap, line, rows] : cases) {
        SCOPED_TRACE(code + std::to_string(gap));
        scan(code, end, gap);
        awaitRest();
        EXPECT_EQ(find<QLineEdit>("goods")->text().toStdString(), line);
        EXPECT_EQ(find<QTableView>("positions")->model()->rowCount(), rows);
        EXPECT_TRUE(find("goods")->hasFocus());
    }
    find<QLineEdit>("goods")->setText(u"3*"_s);
    scan("4601");
    awaitRest();
    EXPECT_EQ(cell(2, ReceiptModel::Quantity), "3");
}

TEST_F(WindowTest, LetsNoScanAnswerADialog)
{
    openWindow();
    service.order({{"kind"_L1, "delay"_L1}, {"milliseconds"_L1, 500}});
    press(Qt::Key_F2, "formDialog");
    scan("4607001234567");
    expectText("scan", "Отсканировано 4607001234567: сначала закончите это");
    EXPECT_FALSE(find("ok")->isEnabled()) << "the bar code is no phone";
    type("9031234567", Qt::Key_Return);
    for (int i = 0; i < 3; ++i)
        scan("4600");
    await("messageDialog"); // to register the customer?
    for (int i = 0; i < 3; ++i)
        scan("4607001234567");
    strike(Qt::Key_Return); // meant for the scanned goods
    EXPECT_TRUE(isShown("messageDialog"));
    expectText("scan", "4607001234567");
    read();
    strike(Qt::Key_Return);
    await("formDialog");
    scan("4607001234567");
    scan("4607001234567", Qt::Key_Tab);
    EXPECT_EQ(find<QLineEdit>("field_name")->text(), QString());
    EXPECT_TRUE(find("field_name")->hasFocus());
    type("Анна");
    read();
    strike(Qt::Key_Return);
    await("formDialog"); // the code, which may be scanned
    scan("0000");
    EXPECT_EQ(find<QLineEdit>("field_input")->text(), u"0000"_s);
    expectText("message", "Введите код из СМС");
    press(Qt::Key_Escape);
    awaitRest();
    EXPECT_EQ(find<QTableView>("positions")->model()->rowCount(), 3) << "scans meanwhile";
    const auto customer = service.dump().value("customers"_L1).toArray().last().toObject();
    EXPECT_EQ(customer["firstName"_L1].toString(), u"Анна"_s)
        << QJsonDocument(customer).toJson().toStdString();
}

TEST_F(WindowTest, DestroysNothingByEnterOrScan)
{
    openWindow();
    enter("4600");
    const struct
    {
        const char *step;
        const char *title;
    } cases[] = {{"remove", "Удалить позицию 1?"},
                 {"abandon", "Аннулировать чек 1?"},
                 {"closeShift", "Закрыть смену 1?"}};
    for (const auto &[step, title] : cases) {
        SCOPED_TRACE(step);
        if (QLatin1String(step) == "closeShift"_L1)
            pressAndRest(Qt::Key_F12);
        click(step);
        await("messageDialog");
        expectText("title", title);
        scan("4600");
        EXPECT_TRUE(isShown("messageDialog"));
        read();
        strike(Qt::Key_Return);
        EXPECT_FALSE(isShown("messageDialog"));
    }
    awaitRest();
    EXPECT_EQ(service.dump().value("orders"_L1).toArray().size(), 1);
    click("closeShift");
    await("messageDialog");
    expectText("message", "Чеков: 1 на 89,90\nВозвратов: 0 на 0,00");
    click("ok");
    expectText("message", "Смена 1 закрыта");
}

TEST_F(WindowTest, AsksOnceAboutALargeQuantityAndAHighPrice)
{
    QFile goods(fileName("goods.csv"));
    ASSERT_TRUE(goods.open(QIODevice::Append));
    goods.write("4609;Ring;100000,01\n");
    goods.close();
    openWindow();
    for (const auto *entry : {"101*4600", "4609"}) {
        SCOPED_TRACE(entry);
        type(entry, Qt::Key_Return, "messageDialog");
        press(Qt::Key_Return);
        EXPECT_EQ(find<QTableView>("positions")->model()->rowCount(), 0);
    }
    enter("100*4600");
    type("101*4600", Qt::Key_Return, "messageDialog");
    expectText("title", "Продать 101 шт.?");
    click("ok");
    expectText("total", "18\u00a0069,90");
}

TEST_F(WindowTest, HasTheKeysOnTheSaleScreenWhereverTheFocusWas)
{
    openWindow();
    // The dialog came while another window had the keyboard.
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&other));
    click("identify");
    await("formDialog");
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    strike(Qt::Key_Escape);
    strike(Qt::Key_4, u"4"_s);
    strike(Qt::Key_Tab, u"\t"_s);
    strike(Qt::Key_Backtab);
    find("goods")->clearFocus();
    strike(Qt::Key_6, u"6"_s);
    strike(Qt::Key_Space, u" "_s);
    QTest::qWait(300);
    EXPECT_EQ(find<QLineEdit>("goods")->text(), u"46 "_s);
    EXPECT_TRUE(find("goods")->hasFocus());
    EXPECT_FALSE(till::MessageDialog::onTop(*window)) << "Space has pressed a button";
}

} // namespace
