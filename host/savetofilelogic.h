#pragma once

#include "host/export.h"
#include "host/mockfactory.h"

#include <QSharedPointer>
#include <QString>

class AbstractDocument;

/// A receipt read from a file, or why it could not be read.
struct LoadedDocument
{
    QSharedPointer<AbstractDocument> document; ///< Null after a failure.
    QString error;          ///< Names the file and what was expected; empty after a success.
    bool isDamaged = false; ///< No later attempt and no newer version can read it either.
};

/// Keeps receipts in files: JSON, written atomically and to the disk, mode 0600.
class HOST_EXPORT SaveToFileLogic
{
public:
    SaveToFileLogic() = default;
    virtual ~SaveToFileLogic();
    Q_DISABLE_COPY_MOVE(SaveToFileLogic)

    /// Writes the whole receipt, its plugin data included. An empty name means the file of the
    /// session's receipt at hand; with none set, or with a null document, nothing is written.
    /// \return Whether the receipt is on disk; the reason of a failure is in the log.
    virtual bool save(const QSharedPointer<AbstractDocument> &document, const QString &fileName);
    /// Reads a receipt back; equal in everything to the one that was saved.
    virtual LoadedDocument load(const QString &fileName);
};

extern template class HOST_EXPORT MockFactory<SaveToFileLogic>;
