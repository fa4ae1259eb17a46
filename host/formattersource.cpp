#include "host/formattersource.h"

FormatterSource::~FormatterSource() = default;
