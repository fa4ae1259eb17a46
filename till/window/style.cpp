#include "till/window/style.h"

#include <QApplication>
#include <QFile>
#include <QPalette>
#include <QRegularExpression>
#include <QWidget>

#include <algorithm>

namespace till {

namespace {

using namespace Qt::StringLiterals;

/// The text of window.qss.
const QString &sheet()
{
    static const auto text = [] {
        QFile file(u":/window.qss"_s);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }();
    return text;
}

/// The colour that the style sheet defines under that name: "@name: #abcdef;".
QString colour(const QString &name)
{
    const auto start = u'@' + name + u": "_s;
    return sheet().sliced(sheet().indexOf(start) + start.size(), 7);
}

QString pixels(double number)
{
    return u"%1px"_s.arg(std::max(qRound(number), 1));
}

} // namespace

bool foldsPad(const QSize &window)
{
    return window.width() < 1'000 || window.height() < 700;
}

double unitFor(const QSize &window)
{
    const auto fraction = [&](double width, double height) {
        return std::min(window.width() / width, window.height() / height);
    };
    return foldsPad(window) ? std::min(fraction(900, 540), 1.0)
                            : std::max(fraction(1'024, 768), 1.0);
}

void installPalette()
{
    QApplication::setStyle(u"Fusion"_s);
    QPalette palette(colour(u"idle"_s), colour(u"ground"_s));
    palette.setColor(QPalette::PlaceholderText, colour(u"quiet"_s));
    QApplication::setPalette(palette);
}

void dress(QWidget &window)
{
    // Qt's style sheets take points only for fonts, and do not know the window's size.
    const auto pixelsPerPoint = 96.0 / 72 * unitFor(window.size());
    static const QRegularExpression replaced(u"@twelfth|@(\\w+)(: #\\w+;)?|([\\d.]+)pt"_s);
    QString result;
    qsizetype end = 0;
    for (const auto &match : replaced.globalMatch(sheet())) {
        result += QStringView(sheet()).sliced(end, match.capturedStart() - end);
        end = match.capturedEnd();
        const auto points = match.captured(3);
        if (!points.isEmpty())
            result += pixels(points.toDouble() * pixelsPerPoint);
        else if (match.captured(1).isEmpty())
            result += pixels((window.height() + 11) / 12);
        else if (match.captured(2).isEmpty())
            result += colour(match.captured(1));
    }
    window.setStyleSheet(result += QStringView(sheet()).sliced(end));
}

} // namespace till
