#pragma once

#include "till/core/settings.h"
#include "till/window/goodsfile.h"
#include "till/window/receiptmodel.h"
#include "till/window/statewatch.h"
#include "till/window/tillthread.h"
#include "till/window/undolist.h"
#include "till/window/windowpresenter.h"

#include <QSet>
#include <QWidget>

class QBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
class QStackedWidget;
class QTableView;

namespace till {

class CustomerPanel;
class DialogFrame;
class ProgressCard;
class Sale;
class StateLine;

/// How the window is set up.
struct WindowSetup
{
    Settings till;
    bool delivers = true;
    QUrl service;
    QString goodsFile; ///< Empty for none.
    QString phoneMask; ///< Of a customer's phone, in Qt's input-mask syntax.
    QStringList
        complaints; ///< What is wrong with the settings and lets the till sell, for its log.
};

/// The cashier's window: the receipt at hand, its customer, and what can be done with them.
///
/// Whatever is typed or scanned goes to the line for goods, unless a dialog is open.
class MainWindow : public QWidget
{
    Q_OBJECT
public:
    explicit MainWindow(WindowSetup setup);
    ~MainWindow() override;

    /// Whether the till has steps to take.
    bool isBusy() const { return till.isBusy(); }

    /// Opens the till. The window can be on the screen before.
    void start();
    /// Says, in the place of `start`, why the till cannot be opened.
    void refuse(const QString &reason);

signals:
    /// The till has ended, and so may the program.
    void ended(int exitCode);

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    using Step = std::function<void()>;

    void layOut();
    QLayout *layOutHead();
    QLayout *layOutReceipt();
    QWidget *layOutSide();
    QLayout *layOutSteps();
    void addKeys();
    QPushButton *addStep(QBoxLayout &row, const char *name, const QString &text, int key,
                         const Step &step, const std::function<bool()> &isPossible = {});
    void connectTill();

    void noteStart(bool canSell, const QString &note);
    void noteEvent(const SaleEvent &event, const std::optional<ReceiptView> &receipt);
    void noteGoods(const QList<GoodsFile::BadLine> &bad);
    void showReceipt(const std::optional<ReceiptView> &receipt);
    void refresh();
    void tell(const QString &text, bool isProblem = false);

    void sellTyped();
    void sellUnknown(const GoodsEntry &entry);
    void identify();
    void changeQuantity();
    void discount();
    void remove();
    void undoLast();
    void abandon();
    void closeShift();
    void showRefused();
    void leave();
    void stay(const QList<int> &receipts);

    void sell(const std::function<void(Sale &)> &step);
    void open(DialogFrame *dialog, const std::function<void()> &accepted);
    void ask(const QString &question, const QString &yes, const std::function<void()> &accepted);
    std::optional<PositionView> selected() const;

    const WindowSetup setup;
    WindowPresenter presenter;
    TillThread till;
    StateWatch watch;
    ReceiptModel model;
    UndoList undo;
    std::shared_ptr<const GoodsFile> goods;
    TillState looked;
    QSet<int> unstored;
    std::optional<ReceiptView> receipt; ///< Without what has happened to its positions since.
    QString campaign;                   ///< Of the last discount.
    bool isOpen = false;
    bool isLeaving = false;

    QWidget *body;
    ProgressCard *progress;
    QLabel *title;
    QLineEdit *goodsLine;
    QStackedWidget *middle;
    QTableView *table;
    QLabel *message;
    QLabel *total;
    CustomerPanel *customer;
    StateLine *state;
    QList<std::pair<QPushButton *, std::function<bool()>>> steps; ///< With when they are possible.
};

} // namespace till
