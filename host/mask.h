#pragma once

#include <QChar>
#include <QString>

#include <vector>

/// How a placeholder writes its value; see `SimpleFormatter` for the language.
struct MaskFormat
{
    enum class Kind {
        Text,
        Number,
        DateTime,
        Unknown,
    };
    enum class Unit : quint8 {
        Literal,
        Year,
        ShortYear,
        Month,
        Day,
        Hour,
        Minute,
        Second,
        Millisecond,
    };
    /// A unit of a date and time pattern, or the punctuation between two.
    struct Part
    {
        Unit unit = Unit::Literal;
        QChar literal;
    };

    Kind kind = Kind::Text;
    int width = 0; ///< Digits of a number at the least.
    std::vector<Part> parts;
};

/// A piece of a mask: text to copy or, when `name` is not empty, a placeholder.
struct MaskPiece
{
    QString text;   ///< As it stands in the mask; "%" for "%%".
    QString source; ///< Empty for an extra value.
    QString name;
    MaskFormat format;
};

/// A mask taken apart.
struct Mask
{
    std::vector<MaskPiece> pieces;
    bool malformed = false; ///< Whether a percent sign that begins nothing was kept as text.
};

Mask parseMask(const QString &text);
