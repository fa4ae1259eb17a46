#pragma once

#include <QString>

namespace till {

struct SettingComplaint;

/// What is wrong with a setting and what was expected, on one line.
QString textOf(const SettingComplaint &complaint);

} // namespace till
