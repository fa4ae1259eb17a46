#pragma once

#include <QSharedPointer>
#include <QString>
#include <QStringList>

#include <optional>
#include <utility>

class AbstractDocument;

namespace till {

/// The receipts of a till in its data directory.
///
/// "open.json" is the receipt being sold; "committing/" holds those that were handed to the loyalty
/// system and are not yet known to be safe with it, "committed/" the finished ones and "damaged/"
/// the files that are damaged. A receipt is in one of these places at any moment; every step
/// survives a power cut. Errors are returned as texts for the cashier.
class ReceiptStore
{
public:
    explicit ReceiptStore(QString directory);

    /// Creates the directories that are missing, mode 0700, and clears away what a kill left of
    /// files being written.
    [[nodiscard]] std::optional<QString> prepare() const;

    /// Shop, register, shift, number and begin: sorts in the order of the receipts of a register.
    static QString nameOf(const AbstractDocument &document);

    QString openFile() const;
    /// Where the receipt of that name is kept while it is handed to the loyalty system.
    QString committingFile(const QString &name) const;

    /// Saves the receipt being sold.
    [[nodiscard]] std::optional<QString> save(const QSharedPointer<AbstractDocument> &document);
    /// Whether "open.json" may be written. It may not while it still holds an earlier receipt that
    /// could not be moved on; each `save` tries that again.
    bool isOpenFileFree() const { return openFileTarget.isEmpty(); }
    /// Moves the receipt being sold to "committing/", as far as it was saved.
    [[nodiscard]] std::optional<QString> beginCommit(const QString &name);
    /// Writes a receipt that is being committed, in place of what is kept of it elsewhere.
    [[nodiscard]] std::optional<QString>
    writeCommitting(const QSharedPointer<AbstractDocument> &document);
    /// Moves a receipt handed over to "committed/".
    [[nodiscard]] std::optional<QString> archive(const QString &name);
    /// Writes a receipt handed over, in place of what is kept of it elsewhere.
    [[nodiscard]] std::optional<QString>
    writeCommitted(const QSharedPointer<AbstractDocument> &document);
    /// Removes the receipt being sold.
    [[nodiscard]] std::optional<QString> discard();

    bool hasOpenReceipt() const;
    /// Whether a receipt of that name is in "committing/" or "committed/".
    bool isCommitted(const QString &name) const;
    /// The names of the receipts in "committing/", oldest first.
    QStringList committing() const;
    /// Reads a receipt; null when that fails, and then `error` says what is wrong and where the
    /// file is: put aside when it is damaged or the receipt being sold, else where it was.
    QSharedPointer<AbstractDocument> load(const QString &file, QString &error);

    /// The highest shift and receipt number among the receipts kept; zeros when there is none.
    std::pair<int, int> highestNumbers() const;
    /// Puts a file that cannot be read aside. \return Where it is now, in words.
    QString setAside(const QString &file);

private:
    QString committedFile(const QString &name) const;
    bool openFileHolds(const QString &name) const;
    std::optional<QString> moveOpenFile(const QString &target);
    std::optional<QString> rewrite(const QSharedPointer<AbstractDocument> &document,
                                   const QString &file);

    QString directory;
    QString openFileTarget; ///< Where the file is to go that still lies in "open.json".
};

} // namespace till
