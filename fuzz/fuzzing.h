#pragma once

#include <QByteArray>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <span>

/// The input that libFuzzer passes to a target.
using Bytes = std::span<const uint8_t>;

/// Reports the current input as a finding unless the condition holds.
void require(bool condition);

QByteArray bytesOf(Bytes bytes);

/// A directory in memory, empty at the start and removed at a normal exit.
QString scratchDirectory();
