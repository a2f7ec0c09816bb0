#pragma once

#include "Freedesktop/Preview/PdfFile.h"

#include <QImage>
#include <QSize>
#include <QString>

#include <memory>
#include <variant>

namespace marrowick {

/// What is told of an item that cannot be shown itself, and beside one that can. Texts are ready to be shown; what is not
/// known is empty.
struct FileFacts {
    QString kind;
    /// In bytes, or the number of items in a folder.
    QString size;
    QString date;
};

/// Only the facts.
struct CardContent {
    /// Why there is no more; empty where nothing else could be expected.
    QString note;
};

struct ImageContent {
    /// No larger than what was asked for; turned as its camera says.
    QImage image;
    /// The picture's own size: in its pixels, of a drawing in points.
    QSize naturalSize;
    bool isDrawing = false;
};

struct TextContent {
    QString text;
    /// Whether the file goes on.
    bool isBeginning = false;
};

struct PdfContent {
    std::shared_ptr<PdfFile> file;
};

struct PreviewContent {
    FileFacts facts;
    std::variant<CardContent, ImageContent, TextContent, PdfContent> shown;
};

}
