#include "till/window/messagedialog.h"

#include "till/window/named.h"
#include "till/window/style.h"

#include <QApplication>
#include <QGridLayout>
#include <QPushButton>
#include <QScrollArea>
#include <QScroller>

#include <algorithm>

namespace till {

namespace {

using namespace Qt::StringLiterals;

/// Shows a whole widget when there is room, else scrolls it.
class Scroller : public QScrollArea
{
public:
    Scroller(QWidget *content, int width)
    {
        setFixedWidth(width);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setFocusPolicy(Qt::NoFocus);
        setWidgetResizable(true);
        setWidget(content);
        QScroller::grabGesture(viewport(), QScroller::TouchGesture);
    }
    QSize minimumSizeHint() const override { return {1, 1}; }
    QSize sizeHint() const override
    {
        const auto *const layout = widget()->layout();
        return {width(), layout->hasHeightForWidth() ? layout->totalHeightForWidth(width())
                                                     : layout->totalSizeHint().height()};
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::LayoutRequest)
            updateGeometry();
        return QScrollArea::eventFilter(watched, event);
    }
};

} // namespace

MessageDialog::MessageDialog(QWidget &window, Kind kind, const Words &words, int width)
    : QDialog(&window)
    , scan(makeLabel(this, u"scan"_s))
{
    constexpr int margin = 12;
    setWindowFlags(Qt::Widget);
    setAttribute(Qt::WA_Moved); // the layout places it; QDialog must not move it
    setAttribute(Qt::WA_StyledBackground);
    hide();
    // A screen reader reads the name.
    named(this, u"messageDialog"_s, QStringList({words.title, words.text}).join(u'\n').trimmed());
    const auto unit = unitFor(window.size());
    const auto spacing = qRound(10 * unit);
    const auto edge = 2 * spacing;
    const auto cardWidth = std::min(qRound(width * unit), window.width() - 2 * margin);
    auto *const inner = named(new QWidget, u"content"_s);
    column = new QVBoxLayout(inner);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(spacing);
    addText(u"message"_s, words.text);
    auto *const heading = makeLabel(this, u"title"_s, words.title);
    heading->setWordWrap(true);
    heading->setHidden(words.title.isEmpty());
    mark(heading, "problem", kind == Kind::Error);
    scan->setWordWrap(true);
    scan->hide();

    auto *const card = named(new QFrame(this), u"card"_s);
    auto *const rows = new QVBoxLayout(card);
    rows->setContentsMargins(edge, spacing, edge, spacing);
    rows->setSpacing(spacing);
    rows->addWidget(heading);
    rows->addWidget(new Scroller(inner, cardWidth - 2 * edge), 1);
    rows->addWidget(scan);
    rows->addLayout(layOutButtons(kind, words));
    if (!words.details.isEmpty())
        addDetails(words.details);
    auto *const cover = new QGridLayout(this);
    // A tall card must not make the window taller than the screen.
    cover->setSizeConstraint(QLayout::SetNoConstraint);
    cover->addWidget(card, 0, 0, Qt::AlignCenter);
    static_cast<QGridLayout *>(window.layout())->addWidget(this, 0, 0);
    connect(this, &QDialog::finished, this, [this] {
        deleteLater();
        giveKeys();
    });
}

MessageDialog *MessageDialog::onTop(const QWidget &window)
{
    const auto dialogs = window.findChildren<MessageDialog *>(Qt::FindDirectChildrenOnly);
    const auto top = std::find_if(dialogs.rbegin(), dialogs.rend(),
                                  [](const auto *dialog) { return !dialog->isHidden(); });
    return top == dialogs.rend() ? nullptr : *top;
}

/// Enables only the topmost dialog, so that nothing behind it can be used.
void MessageDialog::giveKeys()
{
    auto *const window = parentWidget();
    auto *const top = onTop(*window);
    for (auto *const child : window->findChildren<QWidget *>(Qt::FindDirectChildrenOnly))
        child->setEnabled(!top || child == top);
    (top ? top->first : window)->setFocus();
}

void MessageDialog::appear()
{
    show();
    raise();
    giveKeys();
}

void MessageDialog::takeScan(const QString &code)
{
    constexpr int shown = 20;
    const auto text = code.size() > shown ? code.left(shown) + u'…' : code;
    scan->setText(tr("Scanned %1: finish this first.").arg(text));
    scan->show();
    QApplication::beep();
}

/// Adds a label to the content, hidden when it is empty.
QLabel *MessageDialog::addText(const QString &name, const QString &text)
{
    auto *const label = makeLabel(column->parentWidget(), name, text);
    label->setWordWrap(true);
    label->setHidden(text.isEmpty());
    column->addWidget(label);
    return label;
}

/// Adds a button that shows the details.
void MessageDialog::addDetails(const QString &details)
{
    auto *const more = named(new QPushButton(tr("Details"), this), u"more"_s);
    more->setFocusPolicy(Qt::TabFocus); // a click leaves Enter to the answer
    column->addWidget(more, 0, Qt::AlignLeft);
    auto *const text = addText(u"details"_s, details);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse);
    text->hide();
    connect(more, &QPushButton::clicked, text, &QLabel::show);
}

QLayout *MessageDialog::layOutButtons(Kind kind, const Words &words)
{
    ok = named(new QPushButton(words.ok.isEmpty() ? tr("OK") : words.ok, this), u"ok"_s);
    connect(ok, &QPushButton::clicked, this, &QDialog::accept);
    auto *const cancel = named(new QPushButton(words.cancel, this), u"cancel"_s);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    cancel->setHidden(words.cancel.isEmpty());
    const auto isWarning = kind == Kind::Warning;
    mark(ok, "destroys", isWarning);
    auto *const usual = isWarning ? cancel : ok;
    usual->setDefault(true);
    focusFirst(usual);
    auto *const row = new QHBoxLayout;
    row->setSpacing(12);
    row->addStretch();
    row->addWidget(cancel);
    row->addWidget(ok);
    return row;
}

} // namespace till
