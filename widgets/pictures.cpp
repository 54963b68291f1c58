// SPDX-License-Identifier: MIT
#include "widgets/pictures.h"

#include <utility>

#include <QCoreApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace {

/// Returns the icons loaded so far, by path.
QHash<QString, QIcon> &iconsInUse()
{
    static QHash<QString, QIcon> icons;
    return icons;
}

const QIcon &iconAt(const QString &path)
{
    QHash<QString, QIcon> &icons = iconsInUse();
    // Pixmaps must not outlive the application.
    if (icons.isEmpty())
        qAddPostRoutine([] { iconsInUse().clear(); });
    auto found = icons.find(path);
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
        iconAt(path).paint(painter, rect, Qt::AlignCenter, mode, state);
    }
    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        return iconAt(path).pixmap(size, 1, mode, state); // `size` is in device pixels
    }
    QPixmap scaledPixmap(const QSize &size, QIcon::Mode mode, QIcon::State state,
                         qreal /*scale*/) override
    {
        return pixmap(size, mode, state);
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
