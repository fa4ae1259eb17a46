#include "cashier.h"

#include "till/window/formdialog.h"
#include "till/window/receiptmodel.h"

#include <QAbstractButton>
#include <QHeaderView>
#include <QLineEdit>
#include <QListWidget>
#include <QScrollArea>
#include <QTableView>

#include <algorithm>
#include <cmath>

namespace {

using namespace Qt::StringLiterals;
using till::ReceiptModel;

/// A colour's relative luminance, from 0 to 1.
double lightness(QRgb colour)
{
    const auto linear = [](int value) {
        const auto part = value / 255.0;
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

/// The contrast between a picture's text and its background, which is its most frequent colour.
double contrast(const QImage &image)
{
    QHash<QRgb, int> counts;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            ++counts[image.pixel(x, y)];
    }
    const auto ground = std::max_element(counts.begin(), counts.end());
    double best = 1;
    for (auto colour = counts.begin(); colour != counts.end(); ++colour) {
        const auto [dark, light] = std::minmax({lightness(colour.key()), lightness(ground.key())});
        best = std::max(best, (light + 0.05) / (dark + 0.05));
    }
    return best;
}

class Screen : public WindowTest
{
protected:
    /// Expects enough contrast of every visible text.
    void expectReadable()
    {
        const auto image = window->grab().toImage();
        for (const auto *widget : window->findChildren<QWidget *>()) {
            const auto *const label = qobject_cast<const QLabel *>(widget);
            const auto *const button = qobject_cast<const QAbstractButton *>(widget);
            const auto *const line = qobject_cast<const QLineEdit *>(widget);
            const auto text = label    ? label->text()
                              : button ? button->text()
                              : line   ? line->placeholderText() + line->text()
                                       : QString();
            if (text.trimmed().isEmpty() || widget->visibleRegion().isEmpty() ||
                !onTop().isAncestorOf(widget))
                continue;
            // Without the border, which may have more contrast than the text.
            const auto inner = widget->rect().adjusted(4, 4, -4, -4);
            const QRect place(widget->mapTo(window.get(), inner.topLeft()), inner.size());
            EXPECT_GE(contrast(image.copy(place)), 4.5)
                << widget->objectName().toStdString() << ": " << text.toStdString();
        }
    }
    const QWidget &onTop() const
    {
        const auto *const dialog = till::MessageDialog::onTop(*window);
        return dialog ? static_cast<const QWidget &>(*dialog) : *window;
    }
    /// Expects every button to be wholly visible or reachable by scrolling.
    void expectInReach()
    {
        for (auto *const button : onTop().findChildren<QAbstractButton *>()) {
            if (!button->isVisible())
                continue;
            for (auto *parent = button->parentWidget(); parent; parent = parent->parentWidget()) {
                if (auto *const area = qobject_cast<QScrollArea *>(parent))
                    area->ensureWidgetVisible(button, 0, 0);
            }
            EXPECT_EQ(button->visibleRegion().boundingRect(), button->rect())
                << button->objectName().toStdString();
        }
    }
    void resize(int width, int height)
    {
        window->resize(width, height);
        QTest::qWait(20);
    }
};

TEST_F(Screen, HasEverythingInReachAtEverySize)
{
    openWindow();
    press(Qt::Key_F2, "formDialog");
    type("9031234567", Qt::Key_Return, "messageDialog");
    press(Qt::Key_Return, "formDialog");
    type("<h1>Анна-Мария Константиновна Рождественская-Преображенская</h1> фон Гогенцоллерн");
    find("field_email")->setFocus();
    type("anna.maria.konstantinovna.rozhdestvenskaya@a-very-long-domain-name.example.org");
    press(Qt::Key_Return, "formDialog");
    type(service.code().toUtf8(), Qt::Key_Return);
    awaitRest();
    enter("4600");
    enter("777");
    for (const auto *const label : window->findChildren<QLabel *>())
        EXPECT_EQ(label->textFormat(), Qt::PlainText) << label->objectName().toStdString();
    const QSize sizes[] = {{800, 600}, {1'024, 749}, {1'024, 768}, {1'920, 1'080}, {512, 384},
                           {533, 400}, {400, 300},   {683, 512},   {1'280, 1'024}};
    for (const auto &size : sizes) {
        SCOPED_TRACE(std::to_string(size.width()) + 'x' + std::to_string(size.height()));
        resize(size.width(), size.height());
        EXPECT_EQ(window->size(), size);
        expectInReach();
        const auto *const total = find<QLabel>("total");
        EXPECT_GE(total->fontInfo().pixelSize(), window->height() / 12);
        EXPECT_EQ(total->visibleRegion().boundingRect(), total->rect());
        const auto *const customer = find<QListWidget>("customer");
        const auto phone = customer->visualItemRect(customer->item(1));
        EXPECT_TRUE(customer->viewport()->rect().contains(phone));
        for (const auto *step : {"edit", "quantity"}) {
            click(step);
            await("formDialog");
            expectInReach();
            EXPECT_TRUE(window->rect().contains(
                QRect(find("ok")->mapTo(window.get(), QPoint()), find("ok")->size())));
            press(Qt::Key_Escape);
            awaitRest();
        }
    }
}

TEST_F(Screen, CutsNoNumber)
{
    QFile goods(fileName("goods.csv"));
    ASSERT_TRUE(goods.open(QIODevice::Append));
    goods.write("4609;A ring in a case of rosewood with a lock of brass;9999999,99\n");
    goods.close();
    openWindow();
    for (int i = 0; i < 100; ++i)
        scan("4600");
    awaitRest();
    type("90*4609", Qt::Key_Return, "messageDialog");
    click("ok");
    awaitRest();
    press(Qt::Key_F6, "formDialog");
    enter("899999000");
    const auto *const table = find<QTableView>("positions");
    for (const auto width : {800, 1'024, 1'920}) {
        resize(width, width * 3 / 5);
        for (const auto column : {ReceiptModel::Number, ReceiptModel::Quantity, ReceiptModel::Price,
                                  ReceiptModel::Discount, ReceiptModel::Sum}) {
            const auto index = table->model()->index(100, column);
            EXPECT_GE(table->columnWidth(column), table->sizeHintForIndex(index).width())
                << index.data().toString().toStdString();
        }
        EXPECT_LE(table->horizontalHeader()->length(), table->viewport()->width());
        EXPECT_GE(find("total")->width(), find("total")->sizeHint().width());
    }
    EXPECT_EQ(find("total")->accessibleName(), u"Итого "_s + find<QLabel>("total")->text());
}

TEST_F(Screen, IsReadable)
{
    openWindow();
    expectReadable();
    enter("4600");
    enter("777");
    expectReadable();
    press(Qt::Key_F10, "messageDialog");
    expectReadable();
    scan("4600");
    expectReadable();
    press(Qt::Key_Escape);
    awaitRest();
    press(Qt::Key_F2, "formDialog");
    type("9031234567", Qt::Key_Return, "messageDialog");
    press(Qt::Key_Return, "formDialog");
    type("Анна");
    press(Qt::Key_Tab);
    type("31.02.1990", Qt::Key_Return);
    expectReadable();
    press(Qt::Key_Escape);
    awaitRest();
    expectReadable();
    press(Qt::Key_F12);
    awaitRest();
    expectReadable();
}

} // namespace
