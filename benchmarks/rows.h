#pragma once

#include "benchmarks/service.h"

#include <QJsonObject>
#include <QSharedPointer>
#include <QStringList>

class AbstractDocument;

namespace bench {

inline constexpr int usualLines = 5; ///< Lines of a receipt.

/// A sale with that many positions. Each has a discount of a till campaign, every third one also a
/// rounding of the change.
QSharedPointer<AbstractDocument> makeReceipt(int lines);
/// The plugin's payload of that order.
QJsonObject orderOf(const QSharedPointer<AbstractDocument> &receipt);
/// The client's requests for a receipt of usual length.
SentRequest sentOrder();

void measureLookUp();
void measurePayloads();
void measureTill(const Service &service);
/// Memory after that many sales, and the start of a till that has stored them.
void measureSales(const Service &service, int sales);
void measureWindow(const Service &service, bool isQuick);

/// Creates and paints a window once: a window with one word, or the till's with a settings file and
/// a directory. \return The exit code.
int paintOnce(const QStringList &arguments);

/// Runs one call a hundred times for valgrind to count: "look-up", "identification", "commit" (with
/// the service down) or "delivery". \return Whether the name is one of these.
bool count(const QString &what, const Service &service);

} // namespace bench
