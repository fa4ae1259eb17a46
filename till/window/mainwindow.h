#pragma once

#include "till/core/settings.h"
#include "till/window/goodsfile.h"
#include "till/window/messagedialog.h"
#include "till/window/receiptmodel.h"
#include "till/window/scanfilter.h"
#include "till/window/tillthread.h"
#include "till/window/windowpresenter.h"

#include <QLocalServer>
#include <QSet>
#include <QTimer>
#include <QWidget>

class QAction;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QListWidget;
class QStackedWidget;
class QTableView;
class QToolButton;

namespace till {

class NumberPad;
class ProgressCard;
class Sale;
class StateLine;

/// The cashier's window: the current receipt, its customer, and the steps for both.
///
/// Unless a dialog is open, typed text goes to the line for goods and a scanned code is sold.
class MainWindow : public QWidget
{
    Q_OBJECT
public:
    /// The settings must be loaded into `Config`, too. `delivers` says whether to deliver the queue
    /// while selling.
    explicit MainWindow(Settings given, bool delivers = true);

    /// Whether a step is under way or waits.
    bool isBusy() const { return !till.waiting().isEmpty(); }

    /// Opens the till. The window may be shown before.
    void start();
    /// Call it instead of `start` when the till cannot sell: tells the cashier the reason, and
    /// support the details.
    void refuse(const QString &reason, const QString &details);

signals:
    /// The till has ended; the program may exit.
    void ended(int exitCode);

protected:
    void closeEvent(QCloseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    using Step = std::function<void()>;
    using Condition = std::function<bool()>;

    void layOut();
    QLayout *layOutHead();
    QLayout *layOutReceipt();
    QWidget *layOutUnknown();
    QWidget *layOutSide();
    QLayout *layOutTotal();
    QWidget *layOutSteps();
    void addKeys();
    QToolButton *addStep(
        QHBoxLayout &row, const char *name, const QString &text, const QKeySequence &keys,
        const Step &step, const Condition &isPossible = [] { return true; });
    void fitColumns(std::optional<int> row = {});
    void connectTill();

    QString startProblem() const;
    void noteStart(bool canSell, const QString &note);
    void noteEvent(const SaleEvent &event, const std::optional<ReceiptView> &after);
    void showReceipt(const std::optional<ReceiptView> &shown);
    void showCustomer(const std::optional<Client> &client);
    void showTotal();
    void refresh();
    void tell(const QString &text, bool isProblem = false);

    void takeScan(const QString &code);
    void sellTyped();
    void sellEntry(const QString &typed);
    void sellUnknown();
    void noteUnknown(const std::optional<GoodsEntry> &entry);
    void askAboutMuch(double quantity, double price, const QString &name, const Step &accepted);
    void identify();
    void changeQuantity();
    void discount();
    void remove();
    void abandon();
    void closeShift();
    void showRefused();
    void showBadGoods();
    void leave();
    void stay(const QList<int> &receipts);

    void sell(const QString &meaning, const std::function<void(Sale &)> &step);
    void ask(const QString &title, const QString &text, const QList<FormField> &fields,
             const std::function<void(const QVariantMap &)> &accepted);
    void warn(const QString &title, const QString &text, const QString &yes, const Step &accepted);
    /// The position selected in the table, for the next step.
    std::optional<PositionView> selected() const;

    const Settings settings;
    const bool delivers;
    const QString frontSocket; ///< Another start of this till finds it there.
    WindowPresenter presenter;
    TillThread till;
    QTimer lookAtService;
    ScanFilter scanner;
    QLocalServer front; ///< A connection brings the window to the front.
    ReceiptModel model;
    GoodsFile goods;
    QSet<int> unstored;
    std::optional<ReceiptView> receipt; ///< Its positions may be old; `model` has the current ones.
    std::optional<SaleEvent> closed;    ///< Of the last receipt, until the next one is opened.
    std::optional<GoodsEntry> unknown;  ///< The last entry, when no goods have its code.
    bool isReturn = false;              ///< Whether the shown sum goes to the customer.
    bool isOpen = false;
    bool isLeaving = false;

    QWidget *body;
    ProgressCard *progress;
    QLabel *title;
    QLineEdit *goodsLine;
    QWidget *unknownRow; ///< Tells that a code is unknown.
    QLabel *unknownText;
    QStackedWidget *middle; ///< Shows a hint or the table.
    QTableView *table;
    QWidget *side;
    NumberPad *pad;
    QLabel *message;
    QLabel *totalCaption;
    QLabel *total;
    QStackedWidget *below; ///< Shows the steps or the progress.
    QToolButton *commit;
    QListWidget *customer;
    StateLine *state;
    QList<std::pair<QAction *, Condition>> steps; ///< Each with its condition.
};

} // namespace till
