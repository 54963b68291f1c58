// SPDX-License-Identifier: MIT
#include "widgets/pictures.h"

#include <utility>

#include <QCoreApplication>
#include <QFileInfo>
#include <QHash>
#include <QIconEngine>
#include <QImage>
#include <QLibraryInfo>
#include <QPainter>
#include <QPixmap>
#include <QResource>
#include <QVersionNumber>

using namespace Qt::StringLiterals;

namespace {

/// Returns the icons loaded so far, by path, and by path and size.
QHash<QString, QIcon> &iconsInUse()
{
    static QHash<QString, QIcon> icons;
    return icons;
}

/// Returns the picture at `path` from the resource that has its pixels in `size`, or a null icon if
/// there is none. Decoding the pictures of the first page would take a fifth of the start.
QIcon readyIcon(const QString &path, const QSize &size)
{
    const QResource file(
        u":/ready/%1/%2.rgba"_s.arg(size.width()).arg(QFileInfo(path).completeBaseName()));
    if (!file.isValid() || !path.startsWith(":/img/"_L1) || size.width() != size.height())
        return {};
    const QByteArray pixels = file.uncompressedData();
    const QImage image(reinterpret_cast<const uchar *>(pixels.constData()), size.width(),
                       size.height(), QImage::Format_RGBA8888_Premultiplied);
    Q_ASSERT(image.sizeInBytes() == pixels.size());
    return QPixmap::fromImage(image.copy()); // the pixels belong to this function
}

/// Returns the icon at `path` for `size` in device pixels.
const QIcon &iconAt(const QString &path, const QSize &size)
{
    QHash<QString, QIcon> &icons = iconsInUse();
    // Pixmaps must not outlive the application.
    if (icons.isEmpty())
        qAddPostRoutine([] { iconsInUse().clear(); });
    const QString readyKey = path + u'@' + QString::number(size.width());
    auto found = icons.find(readyKey);
    if (found == icons.end())
        found = icons.insert(readyKey, readyIcon(path, size));
    if (!found->isNull())
        return *found;
    found = icons.find(path);
    if (found == icons.end())
        found = icons.insert(path, QIcon(path));
    return *found;
}

/// Loads the file when the icon is first drawn. A QIcon made from a path reads it at once.
class LateIconEngine : public QIconEngine
{
public:
    explicit LateIconEngine(QString pathOfPicture)
        : path(std::move(pathOfPicture))
    {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State state) override
    {
        const QSizeF size = QSizeF(rect.size()) * painter->device()->devicePixelRatio();
        const QPixmap drawn = pixmap(size.toSize(), mode, state);
        // With this hint, which QStylePainter sets, Qt starts threads to draw a large picture.
        const bool wasSmooth = painter->testRenderHint(QPainter::SmoothPixmapTransform);
        painter->setRenderHint(QPainter::SmoothPixmapTransform, QSizeF(drawn.size()) != size);
        painter->drawPixmap(rect, drawn);
        painter->setRenderHint(QPainter::SmoothPixmapTransform, wasSmooth);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return iconAt(path, size).pixmap(size, 1, mode, state); // `size` is in device pixels
    }
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal scale) override
    {
        // Since Qt 6.8 the size is in device-independent pixels. A program that was built with an
        // older one may run with it.
        static const bool isScaled = QLibraryInfo::version() < QVersionNumber(6, 8);
        return pixmap(isScaled ? size : (QSizeF(size) * scale).toSize(), mode, state);
    }
    QSize actualSize(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return pixmap(size, mode, state).size();
    }
    QString key() const override
    {
        return u"LateIconEngine"_s;
    }
    QIconEngine *clone() const override
    {
        return new LateIconEngine(path);
    }
    bool isNull() override
    {
        return false;
    }

private:
    QString path;
};

} // namespace

QIcon Pictures::icon(const QString &path)
{
    return QIcon(new LateIconEngine(path));
}

PictureLabel::PictureLabel(QWidget *parent)
    : QLabel(parent)
{
    setAlignment(Qt::AlignCenter);
}

void PictureLabel::setPicture(const QString &path, int extent)
{
    picture = path;
    pictureExtent = extent;
    drawnFor = 0;
    if (isVisible())
        draw();
    updateGeometry();
}

QSize PictureLabel::sizeHint() const
{
    return {pictureExtent, pictureExtent};
}

QSize PictureLabel::minimumSizeHint() const
{
    return sizeHint();
}

void PictureLabel::showEvent(QShowEvent *event)
{
    QLabel::showEvent(event);
    draw();
}

void PictureLabel::draw()
{
    // Rotating the window shows every page once, but the pixmap need not be drawn again.
    if (picture.isEmpty() || drawnFor == devicePixelRatio())
        return;
    drawnFor = devicePixelRatio();
    const QSize size(pictureExtent, pictureExtent);
    setPixmap(Pictures::icon(picture).pixmap(size, devicePixelRatio()));
}
