#include "till/window/dialogframe.h"

#include <QApplication>
#include <QEvent>
#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>

#include <utility>

namespace till {

Curtain::Curtain(QWidget &window)
    : QWidget(&window)
    , focusBefore(QApplication::focusWidget())
{
    for (auto *const child : window.findChildren<QWidget *>(Qt::FindDirectChildrenOnly)) {
        if (child != this && child->isEnabled() && !child->isWindow()) {
            child->setEnabled(false);
            covered.append(child);
        }
    }
    auto *const grid = new QGridLayout(this);
    grid->setRowStretch(0, 1);
    grid->setRowStretch(2, 1);
    grid->setColumnStretch(0, 1);
    grid->setColumnStretch(2, 1);
    window.installEventFilter(this);
    setGeometry(window.rect());
}

void Curtain::lift()
{
    hide();
    deleteLater();
    for (const auto &widget : std::exchange(covered, {})) {
        if (widget)
            widget->setEnabled(true);
    }
    if (focusBefore)
        focusBefore->setFocus();
}

void Curtain::paintEvent(QPaintEvent * /*event*/)
{
    constexpr QColor shade(20, 30, 40, 130);
    QPainter(this).fillRect(rect(), shade);
}

bool Curtain::eventFilter(QObject * /*watched*/, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        setGeometry(parentWidget()->rect());
    return false;
}

DialogFrame::DialogFrame(QWidget &window, const QString &title)
    : QDialog(new Curtain(window))
    , column(new QVBoxLayout(this))
{
    setWindowFlags(Qt::Widget);
    setAttribute(Qt::WA_Moved); // its place is the layout's affair, not the dialog's
    setAttribute(Qt::WA_StyledBackground);
    setAccessibleName(title);
    setWindowTitle(title);
    column->setContentsMargins(24, 20, 24, 20);
    column->setSpacing(10);
    addText(QStringLiteral("title"), title);
    static_cast<QGridLayout *>(parentWidget()->layout())->addWidget(this, 1, 1);
    connect(this, &QDialog::finished, this, &DialogFrame::dispose);
}

void DialogFrame::appear()
{
    show();
    parentWidget()->show();
    parentWidget()->raise();
    if (first)
        first->setFocus();
}

void DialogFrame::reject()
{
    if (isCancellable)
        QDialog::reject();
}

void DialogFrame::dispose()
{
    static_cast<Curtain *>(parentWidget())->lift();
}

QLabel *DialogFrame::addText(const QString &name, const QString &text)
{
    auto *const label = new QLabel(text, this);
    label->setObjectName(name);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setHidden(text.isEmpty());
    column->addWidget(label);
    return label;
}

void DialogFrame::addButtons(const QString &okText, const QString &cancelText)
{
    auto *const row = new QHBoxLayout;
    row->setSpacing(12);
    row->addStretch();
    const auto add = [&](const QString &text, const QString &name) {
        auto *const button = new QPushButton(text, this);
        button->setObjectName(name);
        button->setMinimumSize(140, 48);
        button->setHidden(text.isEmpty());
        row->addWidget(button);
        return button;
    };
    auto *const cancel = add(cancelText, QStringLiteral("cancel"));
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    ok = add(okText, QStringLiteral("ok"));
    ok->setDefault(true);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    setTabOrder(ok, cancel);
    column->addLayout(row);
}

MessageDialog::MessageDialog(QWidget &window, Kind kind, const QString &text, const QString &ok,
                             const QString &cancel)
    : DialogFrame(window, kind == Kind::Error     ? tr("Error")
                          : kind == Kind::Message ? tr("Message")
                                                  : tr("Question"))
{
    setObjectName(QStringLiteral("messageDialog"));
    setProperty("error", kind == Kind::Error);
    setMinimumWidth(460);
    addText(QStringLiteral("message"), text);
    addButtons(ok, cancel);
    focusFirst(okButton());
}

} // namespace till
