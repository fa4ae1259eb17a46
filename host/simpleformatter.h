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
/// All other text is copied as it stands; a percent sign that begins none of these is kept too, and
/// reported in the log. A value wider than N digits is written in full; the sign of a negative one
/// counts as a digit.
///
/// A placeholder that cannot be expanded (unknown source, field or format, or a value that is
/// missing or does not fit the format) leaves nothing in the result and is named in the log.
class HOST_EXPORT SimpleFormatter : public HostObject
{
public:
    /// The expansion of `mask` over the sources and the extra values. Of two sources of one name
    /// the first counts. `flags` is kept for hosts with variants of the language and is not read.
    virtual QString format(const QString &mask,
                           const QList<QSharedPointer<FormatterSource>> &sources, int flags,
                           const QVariantMap &extraValues) const;
    /// What `format` would say in the log of the mask over these sources.
    QStringList complaints(const QString &mask,
                           const QList<QSharedPointer<FormatterSource>> &sources) const;
};

extern template class HOST_EXPORT MockFactory<SimpleFormatter>;
