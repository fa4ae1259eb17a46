#include "host/documentwatcher.h"

DocumentWatcher::~DocumentWatcher() = default;
