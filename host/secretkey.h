#pragma once

#include "host/export.h"

#include <QString>

/// The text with "***" in place of the configured secret key ("LmMindbox:secretKey"): as it is,
/// escaped for JSON, or percent-encoded.
///
/// Use it for every text that may repeat a service's answer in a log, a file or on a screen. A key
/// of less than four characters protects nothing and would match ordinary words, so it is not
/// replaced. Call it before shortening a text: a part of the key is not found.
HOST_EXPORT QString withoutSecretKey(QString text);
