#include "host/session.h"

template class Singleton<Session>;
