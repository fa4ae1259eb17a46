#pragma once

#include <QLineEdit>

namespace till {

/// A line to type in. With an input mask the cursor goes to the first empty place, and a number
/// that was typed or pasted in another spelling ("8 916 ...") is brought into the mask's shape.
class LineField : public QLineEdit
{
    Q_OBJECT
public:
    explicit LineField(QWidget *parent = nullptr);

    /// Sets the mask, and the text in its shape.
    void setUp(const QString &mask, const QString &text);
    /// Whether nothing was typed; what the mask shows by itself does not count.
    bool isBlank() const { return displayText() == blank; }
    /// The text as typed, empty when nothing was.
    QString typed() const { return isBlank() ? QString() : text(); }

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    bool insertShaped(const QString &added);
    QString inPlaces() const;
    void goToFirstPlace();

    QString blank; ///< What the mask shows by itself.
    QChar emptyPlace = u' ';
};

} // namespace till
