#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace marrowick {

enum class TextEnd {
    whole,
    /// The bytes may stop in the middle of a character.
    cutOff,
};

/// What `bytes` say: UTF-8, else UTF-16 with its mark, else Latin-1. Line ends become line feeds; control characters and
/// those that turn the writing direction become visible marks. Absent for bytes that are no text.
std::optional<QString> textFrom(QByteArray const& bytes, TextEnd end);

/// Breaks lines so that none has more than `longest` characters.
QString withShortLines(QString const& text, qsizetype longest);

}
