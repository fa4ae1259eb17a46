#pragma once

#include <QList>

/// The tables of a till's store and how older ones are brought forward.
namespace schema {

inline constexpr int applicationId = 0x54696C51; ///< "TilQ" in the file's header.
inline constexpr int version = 2;                ///< In the file's `user_version`.

/// The statements that make a file of this version out of one of that version, 0 for an empty one.
QList<const char *> changesSince(int oldVersion);

} // namespace schema
