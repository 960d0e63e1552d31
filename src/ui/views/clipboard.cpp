#include "ui/views/clipboard.h"

#include "core/picture/drawing.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>

namespace veltrona::drawing {

namespace {

/// The clipboard keeps its own copy of the pixels, so the bitmap that it owns now can go.
bool takeBitmap(Handle bitmap) {
    const Picture owned(bitmap);
    const std::optional<BitmapView> view = describeBitmap(bitmap);
    QGuiApplication::clipboard()->setImage(
        QImage(view->bits, view->width, view->height, view->bytesPerRow, QImage::Format_BGR888)
            .mirrored());
    return true;
}

} // namespace

void useSystemClipboard() {
    setClipboard(takeBitmap);
}

} // namespace veltrona::drawing
