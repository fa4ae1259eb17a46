#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>

/// What libFuzzer hands to a target.
using Bytes = std::span<const uint8_t>;

/// Makes a finding of the input at hand when something that must always hold does not.
void require(bool condition);

QByteArray bytesOf(Bytes bytes);

/// A directory in memory, empty at the start and removed at a regular end.
QString scratchDirectory();
