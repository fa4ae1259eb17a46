#include "till/window/dialogframe.h"

#include "till/window/named.h"

#include <QApplication>
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
    // A tall dialog must not make the window taller than the screen.
    (new QGridLayout(this))->setSizeConstraint(QLayout::SetNoConstraint);
    static_cast<QGridLayout *>(window.layout())->addWidget(this, 0, 0, -1, -1);
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
    column->setSpacing(12);
    addText(QStringLiteral("title"), title);
    static_cast<QGridLayout *>(parentWidget()->layout())->addWidget(this, 0, 0, Qt::AlignCenter);
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
    auto *const label = named(new QLabel(text, this), name);
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
        auto *const button = named(new QPushButton(text, this), name);
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
