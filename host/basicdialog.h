#pragma once

#include <QString>

#include <optional>
#include <utility>

namespace core::BasicDialog {

/// How a text input ended.
class Result
{
public:
    /// Cancelled.
    Result() = default;
    /// Closed with this text, possibly empty.
    explicit Result(QString text)
        : data(std::move(text))
    {}

    /// Whether the cashier closed the input without an answer.
    bool canceled() const { return !data.has_value(); }
    /// Whether nothing was entered; true for a cancelled input.
    bool isEmpty() const { return getData().isEmpty(); }
    /// The text as entered; empty for a cancelled input.
    QString getData() const { return data.value_or(QString()); }

private:
    std::optional<QString> data;
};

} // namespace core::BasicDialog
