#pragma once

#include <QtGlobal>

/// Marks the symbols that the host's shared library exports.
#if defined(TILLHOST_LIBRARY)
#    define HOST_EXPORT Q_DECL_EXPORT
#else
#    define HOST_EXPORT Q_DECL_IMPORT
#endif
