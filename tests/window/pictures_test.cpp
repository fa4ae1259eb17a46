#include "cashier.h"

#include "till/core/till.h"

namespace {

using namespace Qt::StringLiterals;

/// Takes the pictures for `scripts/pictures`, in WINDOW_LANGUAGE and WINDOW_SIZE.
class Pictures : public WindowTest
{
protected:
    Pictures()
    {
        QFile goods(fileName("goods.csv"));
        EXPECT_TRUE(goods.open(QIODevice::WriteOnly));
        goods.write(language == "ru"_L1 ? "code;name;price\n4600;Молоко 3,2%;89,90\n"
                                          "4601;Хлеб ржаной;45,50\n4602;Сыр весовой;310\n"
                                        : "code;name;price\n4600;Milk;89,90\n"
                                          "4601;Rye bread;45,50\n4602;Cheese by weight;310\n");
    }
    /// Saves a picture of the screen.
    void take(const char *name)
    {
        QTest::qWait(100); // until the layout is done
        const auto image = window->grab().toImage().convertToFormat(QImage::Format_RGB32);
        const auto file =
            u"%1/window-%2-%3-%4.png"_s.arg(qEnvironmentVariable("PICTURES"), QLatin1String(name),
                                            language, QString::number(image.width()));
        EXPECT_TRUE(image.save(file));
    }
    void takeDialog(Qt::Key key, const char *dialog, const char *name)
    {
        press(key, dialog);
        take(name);
    }

    const QString language = qEnvironmentVariable("WINDOW_LANGUAGE", u"ru"_s);
};

TEST_F(Pictures, DISABLED_OfASale)
{
    openWindow(language);
    take("empty");
    takeDialog(Qt::Key_F2, "formDialog", "phone");
    type("9031234567", Qt::Key_Return, "messageDialog");
    scan("4607001234567");
    take("question");
    press(Qt::Key_Return, "formDialog");
    type(language == "ru"_L1 ? "Анна Иванова" : "Anna Ivanova", Qt::Key_Tab);
    type("31.02.1990", Qt::Key_Return);
    take("form-wrong");
    type("05.03.1990");
    click("sex_0");
    find("field_email")->setFocus();
    type("anna.ivanova@example.org");
    take("form");
    takeDialog(Qt::Key_Return, "formDialog", "code");
    type("0000", Qt::Key_Return);
    expectText("message", " 2");
    take("wrong-code");
    type(service.code().toUtf8(), Qt::Key_Return);
    awaitRest();
    type("4600", Qt::Key_Return);
    type("3*4601", Qt::Key_Return);
    enter("0,350*4602");
    takeDialog(Qt::Key_F5, "formDialog", "quantity");
    press(Qt::Key_Escape);
    press(Qt::Key_F6, "formDialog");
    enter("9,80");
    take("sale");
    enter("777");
    take("unknown-code");
    takeDialog(Qt::Key_F8, "formDialog", "sell-unknown");
    press(Qt::Key_Escape);
    takeDialog(Qt::Key_F7, "messageDialog", "remove");
    press(Qt::Key_Escape);
    takeDialog(Qt::Key_F10, "messageDialog", "cancel");
    press(Qt::Key_Escape);
    awaitRest();
    press(Qt::Key_F12);
    awaitRest();
    take("closed");
    click("closeShift");
    await("messageDialog");
    take("shift");
    press(Qt::Key_Escape);
    pressAndRest(Qt::Key_F9);
    enter("4600");
    take("return");
    pressAndRest(Qt::Key_F12);
    take("return-closed");
}

TEST_F(Pictures, DISABLED_OfTroubles)
{
    QFile goods(fileName("goods.csv"));
    ASSERT_TRUE(goods.open(QIODevice::Append));
    goods.write("4603;Tea;dear\n");
    goods.close();
    openWindow(language);
    service.order({{"kind"_L1, "html"_L1}, {"operation"_L1, "Offline.CreateAuthorizedOrder"_L1}});
    enter("4600");
    takeDialog(Qt::Key_F12, "messageDialog", "error");
    pressAndRest(Qt::Key_Return);
    await("stateRefused");
    take("refused");
    click("stateRefused");
    await("messageDialog");
    take("refused-list");
    press(Qt::Key_Escape);
    click("stateGoods");
    await("messageDialog");
    take("goods-file");
    press(Qt::Key_Escape);
    service.order({{"kind"_L1, "delay"_L1}, {"milliseconds"_L1, 2'000}});
    press(Qt::Key_F2, "formDialog");
    type("9160000001", Qt::Key_Return, "progress");
    scan("4600");
    scan("4601");
    QTest::qWait(500);
    take("waiting");
    awaitRest();
    service.stop();
    pressAndRest(Qt::Key_F12);
    QTest::qWait(1'100); // until the state line has looked at the service
    take("no-service");
    service.start();
    closeWindow();
    till::ProcessLock terminal(till::Till::lockFile(fileName("data")));
    ASSERT_TRUE(terminal.acquire());
    openWindow(language);
    await("messageDialog");
    take("cannot-sell");
}

} // namespace
