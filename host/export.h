#pragma once

#include <QtGlobal>

/// Marks what crosses the border of the host's shared library.
#if defined(TILLHOST_LIBRARY)
#    define HOST_EXPORT Q_DECL_EXPORT
#else
#    define HOST_EXPORT Q_DECL_IMPORT
#endif
