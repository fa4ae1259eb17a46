#pragma once

#include "till/window/dialogframe.h"

#include <host/dialogrequests.h>

#include <QVariantMap>

namespace till {

class FieldEditor;
class NumberPad;

/// Fields to be filled in together.
///
/// OK stays off until all are right; Enter leads to the first that is not.
class FormDialog : public DialogFrame
{
    Q_OBJECT
public:
    FormDialog(QWidget &window, const FormRequest &request);

    QVariantMap answers() const;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLayout *addFields(const FormRequest &request);
    QWidget *firstToFill(const QString &key) const;
    FieldEditor *firstWrong() const;
    void check();
    void followFocus(QWidget *before, QWidget *now);

    QList<FieldEditor *> editors;
    NumberPad *pad;
    bool validates;
};

} // namespace till
