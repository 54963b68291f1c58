// SPDX-License-Identifier: MIT
#include "widgets/controls.h"

#include <algorithm>

#include <QBoxLayout>
#include <QFont>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>

#include "widgets/pictures.h"
#include "widgets/wraplabel.h"
#include "widgets/wrappingbutton.h"

namespace {

// Device-independent pixels.
constexpr int pageEdge = 12;
constexpr int rowGap = 8;
/// The resource path of the picture, because a QIcon does not store it.
constexpr const char *pictureProperty = "picture";

using TextButton = WrappingButton<QPushButton, QStyle::CE_PushButton>;

/// A large button. TouchStyle draws the picture above the text if the button is narrow, so its
/// minimum width is that of a word or of the picture.
class Door : public TextButton
{
public:
    using TextButton::TextButton;

    QSize minimumSizeHint() const override
    {
        return {std::max(leastTextWidth(), iconSize().width()), sizeHint().height()};
    }

protected:
    int aroundText() const override
    {
        return width() < Controls::leastDoorBeside ? 0 : TextButton::aroundText();
    }
};

/// A scroll area that takes its contents when it is first shown: QScrollArea asks its contents for
/// their size at once, although most pages are not opened for a while.
class LateScrollArea : public QScrollArea
{
public:
    explicit LateScrollArea(QWidget *lateContents)
        : contents(lateContents)
    {
        contents->setParent(viewport());
        contents->hide();
    }

protected:
    void showEvent(QShowEvent *event) override
    {
        QScrollArea::showEvent(event);
        if (!contents)
            return;
        setWidget(contents);
        contents->setAutoFillBackground(false); // setWidget() has turned it on
        contents = nullptr;
    }

private:
    QWidget *contents; // null once it is the widget of this area
};

void prepare(QPushButton *button, const QString &objectName, const QString &picture, int extent)
{
    // The button may be narrower than its size hint.
    button->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
    button->setObjectName(objectName);
    button->setIconSize(QSize(extent, extent));
    button->setProperty(pictureProperty, picture);
}

} // namespace

void Controls::setPageSpacing(QBoxLayout *box)
{
    box->setSpacing(besideSeparator);
    box->setContentsMargins(pageEdge, pageEdge, pageEdge, pageEdge);
}

void Controls::setPaneSpacing(QBoxLayout *box)
{
    box->setSpacing(paneGap);
    box->setContentsMargins(pageEdge, pageEdge, pageEdge, pageEdge);
}

QFrame *Controls::sheet()
{
    auto *frame = new QFrame;
    frame->setFrameShape(QFrame::StyledPanel);
    return frame;
}

QVBoxLayout *Controls::layOutSheet(QFrame *sheet)
{
    auto *layout = new QVBoxLayout(sheet);
    layout->setContentsMargins(sheetMargins);
    layout->setSpacing(rowGap);
    return layout;
}

QLabel *Controls::caption(const QString &text)
{
    auto *label = new WrapLabel;
    label->setText(text);
    label->setProperty(captionProperty, true);
    return label;
}

void Controls::setBold(QWidget *widget)
{
    QFont bold = widget->font();
    bold.setBold(true);
    widget->setFont(bold);
}

void Controls::setMain(QPushButton *button)
{
    // The flag QPushButton::default is not used, because a held Enter key would press the button
    // repeatedly.
    button->setProperty(mainProperty, true);
    setBold(button);
}

void Controls::addStack(QBoxLayout *box, const QList<QPushButton *> &buttons)
{
    box->setSpacing(stackGap);
    box->addStretch();
    for (QPushButton *button : buttons) {
        button->setProperty(leadingProperty, true);
        box->addWidget(button);
    }
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
    auto *button = new TextButton(Pictures::icon(picture), text);
    prepare(button, objectName, picture, extent);
    return button;
}

QPushButton *Controls::door(const QString &objectName, const QString &picture, int extent,
                            const QString &text)
{
    auto *button = new Door(Pictures::icon(picture), text);
    prepare(button, objectName, picture, extent);
    button->setProperty(leadsOnProperty, true);
    setBold(button);
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

QScrollArea *Controls::scrollArea(QWidget *contents)
{
    auto *area = new LateScrollArea(contents);
    area->setWidgetResizable(true);
    area->viewport()->setBackgroundRole(QPalette::Base);
    return area;
}

QFrame *Controls::separator(QFrame::Shape shape)
{
    auto *line = new QFrame;
    line->setFrameShape(shape);
    line->setMinimumSize(besideSeparator, besideSeparator);
    line->setFrameShadow(QFrame::Sunken);
    return line;
}
