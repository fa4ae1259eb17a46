#pragma once

namespace lmmindbox {

/// Code of the till's action that edits the receipt's customer.
constexpr int customerEditAction = 170;

} // namespace lmmindbox
