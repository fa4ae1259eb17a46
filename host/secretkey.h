#pragma once

#include "host/export.h"

#include <QString>

/// The text with "***" in each place where it holds the configured secret key
/// ("LmMindbox:secretKey"), each of whose characters may be escaped as in JSON, or in JSON within
/// JSON, or percent-encoded.
///
/// For everything that a log, a file or a screen gets and that may repeat what a service has said.
/// A key of less than four characters protects nothing and stands in every other word, so it stays.
/// To be called before a text is shortened: a part of the key is not found.
HOST_EXPORT QString withoutSecretKey(QString text);
