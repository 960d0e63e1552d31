#include "ui/views/clipboard.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

namespace veltrona::drawing {

bool toSystemClipboard(Handle bitmap) {
    const Picture owned(bitmap); // the clipboard keeps its own copy of the pixels
    const std::optional<BitmapView> view = describeBitmap(bitmap);
    QGuiApplication::clipboard()->setImage(
        QImage(view->bits, view->width, view->height, view->bytesPerRow, QImage::Format_BGR888)
            .mirrored());
    return true;
}

} // namespace veltrona::drawing
