#pragma once

#include "host/export.h"
#include "host/formattersource.h"
#include "host/hostobject.h"
#include "host/mockfactory.h"

#include <QList>
#include <QSharedPointer>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// Expands masks such as "%(document.shopCode[04d])".
///
/// "%(source.field[format])" stands for a field of a source; "%(name[format])" for an extra value.
/// Formats: "s" (the value as text), "d" and "0Nd" (whole number, with zeros to N digits, N up to
/// 99), and patterns for a `QDateTime` made of "yyyy", "yy", "MM", "dd", "hh", "mm", "ss", "zzz"
/// and any punctuation. Without "[format]" the value is written as text. "%%" is a percent sign.
/// All other text is copied. A percent sign that begins none of these is copied too, and logged. A
/// value wider than N digits is written in full; a minus sign counts as a digit.
///
/// A placeholder that cannot be expanded becomes an empty text and is named in the log: its source,
/// field or format is unknown, or its value is missing or does not fit the format.
class HOST_EXPORT SimpleFormatter : public HostObject
{
public:
    /// Expands `mask` over the sources and the extra values. The first of several sources with the
    /// same name counts. `flags` is not read: it is for hosts with variants of the mask language.
    virtual QString format(const QString &mask,
                           const QList<QSharedPointer<FormatterSource>> &sources, int flags,
                           const QVariantMap &extraValues) const;
    /// The complaints that `format` would log about the mask.
    QStringList complaints(const QString &mask,
                           const QList<QSharedPointer<FormatterSource>> &sources) const;
};

extern template class HOST_EXPORT MockFactory<SimpleFormatter>;
