// SPDX-License-Identifier: MIT
#include "widgets/controls.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "widgets/pictures.h"
#include "widgets/wraplabel.h"
#include "widgets/wrappingbutton.h"

namespace {

// Device-independent pixels.
constexpr int pageSpacing = 8;
/// An icon does not tell where it is from.
constexpr const char *pictureProperty = "picture";

} // namespace

void Controls::setPageSpacing(QBoxLayout *box)
{
    box->setSpacing(pageSpacing);
    box->setContentsMargins(pageSpacing, pageSpacing, pageSpacing, pageSpacing);
}

QPushButton *Controls::pictureButton(const QString &objectName, const QString &picture, int extent,
                                     const QString &name)
{
    QPushButton *button = textButton(objectName, picture, extent, QString());
    button->setAccessibleName(name);
    return button;
}

QPushButton *Controls::viewButton(const QString &objectName, const QString &picture, int extent,
                                  const QString &name)
{
    QPushButton *button = pictureButton(objectName, picture, extent, name);
    button->setCheckable(true);
    return button;
}

QPushButton *Controls::textButton(const QString &objectName, const QString &picture, int extent,
                                  const QString &text)
{
    auto *button =
        new WrappingButton<QPushButton, QStyle::CE_PushButton>(Pictures::icon(picture), text);
    // It may be narrower than its hint.
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    button->setObjectName(objectName);
    button->setIconSize(QSize(extent, extent));
    button->setProperty(pictureProperty, picture);
    return button;
}

QString Controls::pictureOf(const QAbstractButton *button)
{
    return button->property(pictureProperty).toString();
}

PictureLabel *Controls::pictureLabel(const QString &objectName)
{
    auto *label = new PictureLabel;
    label->setObjectName(objectName);
    return label;
}

QLabel *Controls::valueLabel(const QString &objectName)
{
    auto *label = new WrapLabel;
    label->setObjectName(objectName);
    return label;
}

QFrame *Controls::separator(QFrame::Shape shape)
{
    auto *line = new QFrame;
    line->setFrameShape(shape);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}
