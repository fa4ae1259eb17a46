#pragma once

#include "till/window/messagedialog.h"

#include <host/dialogrequests.h>

namespace till {

class FieldEditor;
class NumberPad;

/// A dialog with the fields of a form, of which at least one may be edited.
///
/// OK stays disabled until all answers are right; Enter goes to the first wrong one.
class FormDialog : public MessageDialog
{
    Q_OBJECT
public:
    /// `takesScans` says whether a scan fills the first field.
    FormDialog(QWidget &window, const Words &words, const QList<FormField> &fields,
               bool takesScans = false);

    QVariantMap answers() const override;
    void takeScan(const QString &code) override;

protected:
    void keyPressEvent(QKeyEvent *event) override;

private:
    QLayout *layOutFields(const QList<FormField> &fields);
    FieldEditor *firstWrong() const;
    void check();
    void followFocus(QWidget *before, QWidget *now);

    const bool takesScans;
    QList<FieldEditor *> editors;
    NumberPad *pad;
};

} // namespace till
