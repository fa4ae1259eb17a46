#include "cashier.h"

#include "till/window/receiptmodel.h"

#include <QApplication>
#include <QJsonArray>

#include <gmock/gmock.h>

namespace {

using namespace Qt::StringLiterals;
using till::ReceiptModel;

TEST_F(WindowTest, SellsToACustomerWhomNobodyKnew)
{
    openWindow();
    press(Qt::Key_F2, "formDialog");
    type("903123456", Qt::Key_Return);
    EXPECT_FALSE(find("ok")->isEnabled());
    expectText("note", "Заполните до конца: +7(___)-___-__-__");
    type("7", Qt::Key_Return, "messageDialog");
    expectText("message", "Зарегистрировать клиента?");
    press(Qt::Key_Return);

    await("formDialog");
    type("Анна Иванова", Qt::Key_Tab);
    type("31.02.1990", Qt::Key_Return);
    EXPECT_TRUE(find("formDialog")->isVisible());
    EXPECT_TRUE(find("field_birthday")->hasFocus());
    type("05.03.1990");
    click("sex_0");
    find("field_email")->setFocus();
    type("anna@example.org");
    press(Qt::Key_Return);

    expectText("message", "Введите код из СМС");
    type("0000", Qt::Key_Return);
    expectText("message", "Некорректный код");
    expectText("message", "+7 903 123-45-67");
    expectText("message", "Попытка 2");
    type(service.code().toUtf8(), Qt::Key_Return);
    awaitRest();
    expectText("customer", "Анна Иванова");
    expectText("customer", "+7 903 123-45-67");
    expectText("customer", "05.03.1990");

    type("4600", Qt::Key_Return);
    type("3*4601", Qt::Key_Return);
    enter("0,350*4602");
    EXPECT_EQ(cell(2, ReceiptModel::Sum), "108,50");
    press(Qt::Key_Up);
    press(Qt::Key_F6, "formDialog");
    type("200", Qt::Key_Return);
    expectText("message", "Скидка больше суммы позиции, 136,50");
    press(Qt::Key_F6, "formDialog");
    enter("9,80");
    expectText("total", "325,10");
    pressAndRest(Qt::Key_F12);
    expectText("message", "закрыт: 325,10");
    expectText("total", "325,10"); // until the next receipt
    expectText("totalCaption", "Чек 1");

    const auto orders = service.dump().value("orders"_L1).toArray();
    ASSERT_EQ(orders.size(), 1);
    EXPECT_EQ(orders.at(0)["totalPrice"_L1].toDouble(), 325.10);
    EXPECT_EQ(orders.at(0)["mobilePhone"_L1].toString(), "79031234567"_L1);
    EXPECT_EQ(orders.at(0)["lines"_L1].toArray().size(), 3);
}

TEST_F(WindowTest, ChangesWhatIsOnTheReceipt)
{
    openWindow();
    type("2*4600", Qt::Key_Return);
    enter("4601");
    press(Qt::Key_F5, "formDialog");
    type("0", Qt::Key_Return);
    EXPECT_TRUE(find("formDialog")->isVisible()) << "nothing of a position is none";
    click("pad_⌫");
    click("pad_4");
    pressAndRest(Qt::Key_Return);
    EXPECT_EQ(cell(1, ReceiptModel::Quantity), "4");
    press(Qt::Key_F6, "formDialog");
    enter("5");
    expectText("total", "356,80");
    EXPECT_EQ(cell(1, ReceiptModel::Discount), "-5,00");
    press(Qt::Key_F10, "messageDialog");
    click("ok");
    awaitRest();
    pressAndRest(Qt::Key_F9);
    expectText("receiptTitle", "Возврат 2");
    expectText("total", "0,00");
    enter("4600");
    expectText("totalCaption", "Верните");
    EXPECT_TRUE(find("commit")->property("return").toBool());
}

TEST_F(WindowTest, SaysThatACodeIsUnknownAndSellsItAllTheSame)
{
    openWindow();
    enter("2*777");
    expectText("unknown", "Товара с кодом 777 нет");
    EXPECT_EQ(till::MessageDialog::onTop(*window), nullptr);
    enter("4600");
    EXPECT_FALSE(isShown("unknown"));
    enter("2*777");
    press(Qt::Key_F8, "formDialog");
    type("Пакет", Qt::Key_Tab);
    enter("7,5");
    expectText("total", "104,90");
    type("x*4600", Qt::Key_Return);
    expectText("message", "«x*4600» — не код");
}

TEST_F(WindowTest, FindsAKnownCustomerWhoseDataIsEditedAndTakenOff)
{
    openWindow();
    press(Qt::Key_F2, "formDialog");
    enter("89160000001"); // the spelling dialled inside the country
    expectText("customer", "Анна Иванова");
    expectText("customer", "электронные");
    expectText("customer", "05.03.1990");
    press(Qt::Key_F3, "formDialog");
    enter(" Петровна");
    expectText("message", "Данные клиента изменены");
    expectText("customer", "Петровна");
    pressAndRest(Qt::Key_F4);
    expectText("customer", "Клиента нет");
}

TEST_F(WindowTest, SpeaksOneLanguageOnAScreen)
{
    const QRegularExpression cyrillic(u"[А-Яа-я]"_s);
    const QRegularExpression latin(u"\\b(?!Enter\\b)[A-Za-z]{2,}"_s);
    openWindow(u"en"_s);
    expectNoText(cyrillic);
    press(Qt::Key_F2, "formDialog");
    type("9031234567", Qt::Key_Return, "messageDialog");
    expectNoText(cyrillic);
    press(Qt::Key_Return, "formDialog");
    press(Qt::Key_Return);
    expectNoText(cyrillic);
    openWindow(u"ru"_s);
    press(Qt::Key_F2, "formDialog");
    expectNoText(latin);
}

TEST_F(WindowTest, NamesTheBadLinesOfTheGoodsFile)
{
    QFile goods(fileName("goods.csv"));
    ASSERT_TRUE(goods.open(QIODevice::Append));
    goods.write("4603;Tea;dear\n");
    goods.close();
    openWindow();
    expectText("message", "");
    await("stateGoods");
    click("stateGoods");
    await("messageDialog");
    expectText("message", "Строка 5: «dear» — не цена");
    pressAndRest(Qt::Key_Return);
    enter("4600");
    expectText("total", "89,90");
}

TEST_F(WindowTest, ReportsARefusedOrderAgain)
{
    openWindow();
    service.order({{"kind"_L1, "html"_L1}, {"operation"_L1, "Offline.CreateAuthorizedOrder"_L1}});
    enter("4600");
    press(Qt::Key_F12, "messageDialog");
    expectText("message", "Не удалось создать заказ");
    pressAndRest(Qt::Key_Return);
    EXPECT_TRUE(QTest::qWaitFor([&] { return isShown("stateRefused"); }));
    click("stateRefused");
    await("messageDialog");
    expectText("message", ", 89,90: Не удалось создать заказ");
    pressAndRest(Qt::Key_Return);
    expectText("message", "Заказ по чеку 1 передан");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isShown("stateRefused"); }));
    EXPECT_EQ(service.dump().value("orders"_L1).toArray().size(), 1);
}

TEST_F(WindowTest, GoesOnAfterARestartAndWithoutTheService)
{
    openWindow();
    press(Qt::Key_F2, "formDialog");
    enter("9160000001");
    enter("4600");
    openWindow();
    expectText("message", "Чек 1 снова открыт");
    expectText("customer", "Анна Иванова");
    expectText("total", "89,90");
    EXPECT_EQ(cell(0, ReceiptModel::Name), "Молоко 3,2%");

    service.stop();
    pressAndRest(Qt::Key_F12);
    expectText("message", "Чек 1 закрыт");
    expectText("stateWaiting", "Сообщений в очереди: 2, с ");
    expectText("stateService", "нет связи с ");
    service.start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return !isShown("stateWaiting"); }, 10'000));
    expectText("stateService", "на связи");
}

/// Counts how often a widget is painted.
class Paints : public QObject
{
public:
    explicit Paints(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        count += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
    int count = 0;
};

TEST_F(WindowTest, StaysAliveWhileTheServiceIsSlow)
{
    openWindow();
    for (const auto *operation : {"Offline.RegisterCustomer", "Offline.ConfirmMobilePhone"})
        service.order({{"kind"_L1, "delay"_L1},
                       {"milliseconds"_L1, 4'000},
                       {"operation"_L1, QLatin1String(operation)}});
    press(Qt::Key_F2, "formDialog");
    type("9031234567", Qt::Key_Return, "messageDialog");
    press(Qt::Key_Return, "formDialog");
    type("Анна", Qt::Key_Return, "progress");
    expectText("progressText", "Регистрация клиента");
    const Paints paints(find("progress"));
    QTest::qWait(2'000);
    EXPECT_GE(paints.count, 10);
    type("4600", Qt::Key_Return, "formDialog"); // the scan waits for its turn
    type("0000", Qt::Key_Return, "progress");
    await("formDialog");
    pressAndRest(Qt::Key_Escape);
    expectText("message", "Ввод кода подтверждения отменен");
    EXPECT_EQ(cell(0, ReceiptModel::Name), "Молоко 3,2%");
}

TEST_F(WindowTest, EndsWhileADialogIsOpenOrTheServiceIsAsked)
{
    for (const auto isSlow : {false, true}) {
        SCOPED_TRACE(isSlow);
        openWindow();
        if (isSlow)
            service.order({{"kind"_L1, "delay"_L1}, {"milliseconds"_L1, 1'000}});
        enter("4600");
        press(Qt::Key_F2, "formDialog");
        type("9031234567", Qt::Key_Return, isSlow ? "progress" : "messageDialog");
        int exitCode = -1;
        QObject::connect(window.get(), &till::MainWindow::ended,
                         [&](int code) { exitCode = code; });
        window->close();
        EXPECT_TRUE(QTest::qWaitFor([&] { return exitCode == 0; }, 10'000));
    }
    openWindow();
    expectText("total", "179,80");
}

} // namespace
