// SPDX-License-Identifier: MIT
#include "widgets/touchstyle.h"

#include <algorithm>
#include <span>
#include <utility>

#include <QAbstractScrollArea>
#include <QApplication>
#include <QFrame>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QPainterPath>
#include <QPushButton>
#include <QStyleFactory>
#include <QStyleOption>
#include <QTabBar>

#include "widgets/contrast.h"
#include "widgets/controls.h"
#include "widgets/wrappingbutton.h"

using namespace Qt::StringLiterals;

namespace {

// Device-independent pixels.
constexpr int sheetRadius = 14;
constexpr int fieldRadius = 10;
constexpr int boxRadius = 8;
constexpr int plainHeight = 56; // of a button without a picture, a field, a tab
constexpr int rowHeight = 52;   // of a check or radio row
constexpr int aroundPicture = 4;
constexpr int besidePicture = 8; // between picture and text, and after the text
constexpr int besideDoorPicture = 12;
constexpr int besideText = 13;
constexpr int chevronRoom = 34;
constexpr QSizeF chevron(8, 16);
constexpr int besideDoor = 6; // above and below a door
constexpr int besideField = 8;
constexpr int indicatorExtent = 32;
constexpr int indicatorStroke = 3;
constexpr int outline = 2;
constexpr int focusedOutline = 3;
constexpr int focusRing = 3;
constexpr int focusGap = 2;
constexpr int scrollAreaFrame = 6; // keeps the viewport off the rounded corners of the sheet
constexpr int plateRadius = 12;    // of the plate below the picture of a main action
constexpr int scrollBarExtent = 12;
constexpr int scrollHandle = 6;
constexpr int leastHandle = 48;
constexpr int menuPadding = 16;

// Opacity.
constexpr int opaque = 255;
constexpr int faintest = 90; // of a disabled picture

/// The colours of a palette, light or dark.
struct Colors
{
    QRgb ink;
    QRgb ground;
    QRgb sheet;
    QRgb light; // used only by Fusion
    QRgb tint;
    QRgb tintPressed;
    QRgb accent;
    QRgb accentPressed;
    QRgb accentLine;
    QRgb outline;
    QRgb muted;
    QRgb selection;
    QRgb selectedText;
    QRgb disabledFill;
    QRgb disabledText;
};

QPalette paletteOf(const Colors &colors)
{
    const QColor ink(colors.ink);
    const QColor sheet(colors.sheet);
    QPalette palette(ink, QColor(colors.tint), QColor(colors.light), QColor(colors.accent),
                     QColor(colors.outline), ink, QColor(Qt::white), sheet, QColor(colors.ground));
    palette.setColor(QPalette::Midlight, QColor(colors.tintPressed));
    palette.setColor(QPalette::Shadow, QColor(colors.accentPressed));
    palette.setColor(QPalette::AlternateBase, sheet);
    palette.setColor(QPalette::PlaceholderText, QColor(colors.muted));
    palette.setColor(QPalette::Link, QColor(colors.accentLine));
    palette.setColor(QPalette::Highlight, QColor(colors.selection));
    palette.setColor(QPalette::HighlightedText, QColor(colors.selectedText));
    palette.setColor(QPalette::Disabled, QPalette::Button, QColor(colors.disabledFill));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText,
                            QPalette::BrightText, QPalette::HighlightedText})
        palette.setColor(QPalette::Disabled, role, QColor(colors.disabledText));
    return palette;
}

QPalette lightPalette()
{
    return paletteOf({.ink = 0x16202C,
                      .ground = 0xEDF1F5,
                      .sheet = 0xFFFFFF,
                      .light = 0xFFFFFF,
                      .tint = 0xCBDCF0,
                      .tintPressed = 0xA9C3E1,
                      .accent = 0x0B58A8,
                      .accentPressed = 0x07427F,
                      .accentLine = 0x0B58A8,
                      .outline = 0x76828F,
                      .muted = 0x505D6C,
                      .selection = 0xCFE3FA,
                      .selectedText = 0x0A2747,
                      .disabledFill = 0xE1E6EB,
                      .disabledText = 0x6C7682});
}

QPalette darkPalette()
{
    return paletteOf({.ink = 0xEAEEF3,
                      .ground = 0x10151B,
                      .sheet = 0x1B222B,
                      .light = 0x2B3746,
                      .tint = 0x2B3746,
                      .tintPressed = 0x3C4C60,
                      .accent = 0x2470CF,
                      .accentPressed = 0x1B5CAE,
                      .accentLine = 0x8CBBFF,
                      .outline = 0x77838F,
                      .muted = 0xAAB5C2,
                      .selection = 0x1F4570,
                      .selectedText = 0xFFFFFF,
                      .disabledFill = 0x222932,
                      .disabledText = 0x8792A0});
}

void fillRounded(QPainter *painter, const QRectF &rect, qreal radius, const QBrush &brush)
{
    painter->setPen(Qt::NoPen);
    painter->setBrush(brush);
    painter->drawRoundedRect(rect, radius, radius);
}

/// Draws a rounded rectangle whose line lies within `rect`.
void strokeRounded(QPainter *painter, const QRectF &rect, qreal radius, const QColor &color,
                   qreal width)
{
    painter->setPen(QPen(color, width));
    painter->setBrush(Qt::NoBrush);
    const qreal half = width / 2;
    painter->drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

/// Draws `path` with round ends and corners.
void strokePath(QPainter *painter, const QPainterPath &path, const QColor &color, qreal width)
{
    painter->setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawPath(path);
}

void drawFocusRing(QPainter *painter, const QRectF &rect, qreal radius, const QPalette &palette)
{
    strokeRounded(painter, rect, radius, palette.color(QPalette::WindowText), focusRing);
    const QRectF inside = rect.adjusted(focusRing, focusRing, -focusRing, -focusRing);
    strokeRounded(painter, inside, radius - focusRing, palette.color(QPalette::Base), focusGap);
}

bool has(const QWidget *widget, const char *property)
{
    return widget && widget->property(property).toBool();
}

bool leadsOn(const QWidget *button)
{
    return has(button, Controls::leadsOnProperty);
}

/// Returns whether a button opens another page and has no picture. Such a button selects a value
/// and is drawn like a field.
bool isChooser(const QStyleOptionButton &option, const QWidget *button)
{
    return option.icon.isNull() && leadsOn(button);
}

void drawChevron(QPainter *painter, const QRectF &rect, const QColor &color)
{
    QPainterPath path;
    const QPointF middle = rect.center();
    path.moveTo(middle - QPointF(chevron.width() / 2, chevron.height() / 2));
    path.lineTo(middle + QPointF(chevron.width() / 2, 0));
    path.lineTo(middle + QPointF(-chevron.width() / 2, chevron.height() / 2));
    strokePath(painter, path, color, indicatorStroke);
}

void drawButtonFill(QPainter *painter, const QStyleOptionButton &button, const QWidget *widget)
{
    const QPalette &palette = button.palette;
    const bool isEnabled = button.state.testFlag(QStyle::State_Enabled);
    const bool isDown = button.state.testFlag(QStyle::State_Sunken);
    QRectF rect(button.rect);
    // Doors are drawn with a gap, but their widgets have none, so that no tap between them is lost.
    if (leadsOn(widget) && !isChooser(button, widget))
        rect.adjust(0, besideDoor, 0, -besideDoor);
    if (!isEnabled) {
        if (!button.features.testFlag(QStyleOptionButton::Flat))
            fillRounded(painter, rect, isChooser(button, widget) ? fieldRadius : sheetRadius,
                        palette.brush(QPalette::Button));
    } else if (leadsOn(widget)) {
        const qreal radius = isChooser(button, widget) ? fieldRadius : sheetRadius;
        fillRounded(painter, rect, radius,
                    palette.brush(isDown ? QPalette::Button : QPalette::Base));
        if (isChooser(button, widget))
            strokeRounded(painter, rect, radius, palette.color(QPalette::Mid), outline);
    } else if (has(widget, Controls::mainProperty)) {
        fillRounded(painter, rect, sheetRadius,
                    palette.brush(isDown ? QPalette::Shadow : QPalette::Dark));
    } else if (button.state.testFlag(QStyle::State_On)) {
        fillRounded(painter, rect, sheetRadius, palette.brush(QPalette::Highlight));
        strokeRounded(painter, rect, sheetRadius, palette.color(QPalette::Link), focusedOutline);
    } else if (isDown) {
        fillRounded(painter, rect, sheetRadius, palette.brush(QPalette::Midlight));
    } else if (!button.features.testFlag(QStyleOptionButton::Flat)) {
        fillRounded(painter, rect, sheetRadius, palette.brush(QPalette::Button));
    }
}

QColor buttonTextColor(const QStyleOptionButton &button, const QWidget *widget)
{
    const bool isMain = has(widget, Controls::mainProperty);
    return button.palette.color(isMain ? QPalette::BrightText : QPalette::ButtonText);
}

/// Returns the space to the right of the text of a button. The space to the left is the same,
/// unless the button has a picture or opens another page.
int roomAfterText(const QStyleOptionButton &button, const QWidget *widget)
{
    if (leadsOn(widget))
        return chevronRoom;
    const bool isRoomy = button.icon.isNull() || has(widget, Controls::leadingProperty);
    return isRoomy ? besideText : besidePicture;
}

/// Returns the width of the space for the picture of a button. In a stack it is at least that of
/// the usual picture, so that the texts are aligned.
int pictureColumn(const QStyleOptionButton &button, const QWidget *widget)
{
    if (button.icon.isNull())
        return 0;
    const int width = button.iconSize.width();
    return has(widget, Controls::leadingProperty) ? std::max(width, Controls::pictureExtent)
                                                  : width;
}

void drawButtonContents(QPainter *painter, const QStyleOptionButton &button, const QWidget *widget)
{
    const bool isEnabled = button.state.testFlag(QStyle::State_Enabled);
    const QIcon::Mode mode = isEnabled ? QIcon::Normal : QIcon::Disabled;
    const QIcon::State state = button.state.testFlag(QStyle::State_On) ? QIcon::On : QIcon::Off;
    QRect rect = button.rect;
    const bool isDoor = leadsOn(widget) && !button.icon.isNull();
    const bool isPictureAbove = isDoor && rect.width() < Controls::leastDoorBeside;
    if (button.text.isEmpty()) {
        const QRect place =
            QStyle::alignedRect(button.direction, Qt::AlignCenter, button.iconSize, rect);
        button.icon.paint(painter, place, Qt::AlignCenter, mode, state);
        return;
    }
    const QRect after(rect.right() - chevronRoom + 1, rect.top(), chevronRoom, rect.height());
    if (leadsOn(widget) && isEnabled && !isPictureAbove)
        drawChevron(painter, after, button.palette.color(QPalette::PlaceholderText));
    if (isPictureAbove) {
        const int textHeight = button.fontMetrics.size(Qt::TextShowMnemonic, button.text).height();
        const int room = rect.height() - textHeight - 2 * besideDoor - 2 * aroundPicture;
        const QSize extent = button.iconSize.boundedTo({room, room});
        const int top = rect.center().y() - (extent.height() + aroundPicture + textHeight) / 2;
        button.icon.paint(painter,
                          QRect(QPoint(rect.center().x() - extent.width() / 2, top), extent),
                          Qt::AlignCenter, mode, state);
        painter->setPen(buttonTextColor(button, widget));
        painter->drawText(
            QRect(rect.left(), top + extent.height() + aroundPicture, rect.width(), textHeight),
            Qt::AlignCenter | Qt::TextShowMnemonic, button.text);
        return;
    }
    const QSize text = button.fontMetrics.size(Qt::TextShowMnemonic, button.text);
    const bool isLeading = leadsOn(widget) || has(widget, Controls::leadingProperty);
    const int icon = pictureColumn(button, widget);
    const int before = button.icon.isNull() ? besideText : aroundPicture + icon + besidePicture;
    const int whole = before + text.width() + roomAfterText(button, widget);
    const int left =
        isLeading ? rect.left() : rect.left() + std::max(0, (rect.width() - whole) / 2);
    if (icon > 0) {
        // A door has additional space on both sides of its picture.
        const int spare = isDoor ? besideDoorPicture : 0;
        const QRect place(left + aroundPicture + spare,
                          rect.center().y() - button.iconSize.height() / 2 + 1, icon,
                          button.iconSize.height());
        // Dark pictures would not stand out from the accent.
        if (isEnabled && has(widget, Controls::mainProperty))
            fillRounded(painter, place.adjusted(2, 2, -2, -2), plateRadius,
                        button.palette.brush(QPalette::BrightText));
        button.icon.paint(painter, place, Qt::AlignCenter, mode, state);
        rect.setLeft(left + before + 2 * spare);
    } else {
        rect.setLeft(isLeading ? left + before : rect.left());
    }
    const Qt::Alignment alignment =
        isLeading || icon > 0 ? Qt::AlignLeft | Qt::AlignVCenter : Qt::AlignCenter;
    painter->setPen(buttonTextColor(button, widget));
    painter->drawText(rect, static_cast<int>(alignment) | Qt::TextShowMnemonic, button.text);
}

void drawField(QPainter *painter, const QStyleOption &option)
{
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool hasFocus = isEnabled && option.state.testFlag(QStyle::State_HasFocus);
    const QPalette &palette = option.palette;
    fillRounded(painter, option.rect, fieldRadius,
                palette.brush(isEnabled ? QPalette::Base : QPalette::Button));
    if (isEnabled)
        strokeRounded(painter, option.rect, fieldRadius,
                      palette.color(hasFocus ? QPalette::Link : QPalette::Mid),
                      hasFocus ? focusedOutline : outline);
}

void drawCheckIndicator(QPainter *painter, const QStyleOption &option)
{
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const QPalette &palette = option.palette;
    const QRectF rect(option.rect);
    if (!option.state.testFlag(QStyle::State_On)) {
        const bool isDown = option.state.testFlag(QStyle::State_Sunken);
        fillRounded(painter, rect, boxRadius,
                    palette.brush(isDown ? QPalette::Button : QPalette::Base));
        strokeRounded(painter, rect, boxRadius, palette.color(QPalette::Mid), indicatorStroke);
        return;
    }
    fillRounded(painter, rect, boxRadius,
                palette.brush(isEnabled ? QPalette::Dark : QPalette::Mid));
    QPainterPath mark;
    mark.moveTo(rect.left() + 0.24 * rect.width(), rect.top() + 0.53 * rect.height());
    mark.lineTo(rect.left() + 0.43 * rect.width(), rect.top() + 0.71 * rect.height());
    mark.lineTo(rect.left() + 0.77 * rect.width(), rect.top() + 0.31 * rect.height());
    strokePath(painter, mark, palette.color(isEnabled ? QPalette::BrightText : QPalette::Base),
               indicatorStroke + 1);
}

void drawRadioIndicator(QPainter *painter, const QStyleOption &option)
{
    const bool isEnabled = option.state.testFlag(QStyle::State_Enabled);
    const bool isOn = option.state.testFlag(QStyle::State_On);
    const bool isDown = option.state.testFlag(QStyle::State_Sunken);
    const QPalette &palette = option.palette;
    const QRectF rect(option.rect);
    const QColor line = palette.color(isOn && isEnabled ? QPalette::Link : QPalette::Mid);
    fillRounded(painter, rect, rect.width() / 2,
                palette.brush(isDown ? QPalette::Button : QPalette::Base));
    strokeRounded(painter, rect, rect.width() / 2, line, indicatorStroke);
    if (isOn) {
        constexpr qreal inner = 0.28; // of the extent, on each side
        const qreal inset = inner * rect.width();
        fillRounded(painter, rect.adjusted(inset, inset, -inset, -inset), rect.width() / 2, line);
    }
}

void drawTab(QPainter *painter, const QStyleOptionTab &tab)
{
    if (!tab.state.testFlag(QStyle::State_Selected))
        return;
    // The selected tab joins the sheet below it, so it has no rounded corners there.
    QPainterPath shape;
    shape.setFillRule(Qt::WindingFill);
    const QRectF rect(tab.rect);
    shape.addRoundedRect(rect, sheetRadius, sheetRadius);
    shape.addRect(rect.adjusted(0, sheetRadius, 0, 0));
    painter->fillPath(shape, tab.palette.brush(QPalette::Base));
}

void drawTabLabel(QPainter *painter, const QStyleOptionTab &tab)
{
    const bool isSelected = tab.state.testFlag(QStyle::State_Selected);
    const QColor color = tab.palette.color(isSelected ? QPalette::Link : QPalette::PlaceholderText);
    painter->setPen(color);
    const int text = TextBreaking::size(tab.text, painter->fontMetrics()).width();
    painter->setFont(
        TextBreaking::fitting(painter->font(), text, tab.rect.width() - 2 * aroundPicture));
    painter->drawText(tab.rect, Qt::AlignCenter | Qt::TextShowMnemonic, tab.text);
    if (isSelected) {
        const QRect line(tab.rect.left() + besideText, tab.rect.bottom() - 2 * focusedOutline,
                         tab.rect.width() - 2 * besideText, focusedOutline);
        fillRounded(painter, line, 1, color);
    }
}

void drawMenuItem(QPainter *painter, const QStyleOptionMenuItem &item)
{
    painter->fillRect(item.rect, item.palette.brush(QPalette::Base));
    if (item.menuItemType == QStyleOptionMenuItem::Separator) {
        painter->fillRect(QRect(item.rect.left() + menuPadding, item.rect.center().y(),
                                item.rect.width() - 2 * menuPadding, 1),
                          item.palette.color(QPalette::Mid));
        return;
    }
    const bool isSelected = item.state.testFlag(QStyle::State_Selected);
    if (isSelected)
        fillRounded(painter, item.rect, fieldRadius, item.palette.brush(QPalette::Highlight));
    painter->setPen(item.palette.color(isSelected ? QPalette::HighlightedText : QPalette::Text));
    painter->setFont(item.font);
    const QRect rect = item.rect.adjusted(menuPadding, 0, -menuPadding, 0);
    const QString mark = item.checked ? u"✓ "_s : QString();
    painter->drawText(rect, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic,
                      mark + item.text.section(u'\t', 0, 0));
    const bool hasMenu = item.menuItemType == QStyleOptionMenuItem::SubMenu;
    painter->drawText(rect, Qt::AlignRight | Qt::AlignVCenter,
                      hasMenu ? u"›"_s : item.text.section(u'\t', 1, 1));
}

} // namespace

TouchStyle::TouchStyle()
    : QProxyStyle(QStyleFactory::create(u"Fusion"_s))
{}

void TouchStyle::applyUnlessChosen(bool isStyleChosen)
{
    if (!isStyleChosen && qEnvironmentVariableIsEmpty("QT_STYLE_OVERRIDE"))
        QApplication::setStyle(new TouchStyle);
}

QPalette TouchStyle::standardPalette() const
{
    return lightPalette();
}

void TouchStyle::polish(QPalette &palette)
{
    const bool isDark = Contrast::ratio(palette.color(QPalette::Window), Qt::white) >
                        Contrast::ratio(palette.color(QPalette::Window), Qt::black);
    palette = isDark ? darkPalette() : lightPalette();
}

void TouchStyle::polish(QApplication *application)
{
    QProxyStyle::polish(application);
    application->installEventFilter(this);
}

void TouchStyle::unpolish(QApplication *application)
{
    application->removeEventFilter(this);
    QProxyStyle::unpolish(application);
}

/// Keeps track of whether keys have moved the focus. Qt's own flag is not used, because it is also
/// set when a tap hides the page with the focus.
bool TouchStyle::eventFilter(QObject *object, QEvent *event)
{
    bool isMovedByKeys = focusIsMovedByKeys;
    if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent *>(event)->key()) {
        case Qt::Key_Tab:
        case Qt::Key_Backtab:
        case Qt::Key_Left:
        case Qt::Key_Right:
        case Qt::Key_Up:
        case Qt::Key_Down:
            isMovedByKeys = true;
            break;
        default:
            break;
        }
    } else if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::TouchBegin) {
        isMovedByKeys = false;
    } else if (event->type() == QEvent::FocusIn || event->type() == QEvent::FocusOut) {
        // A list repaints only its rows when the focus changes, but the focus ring is around them.
        if (auto *area = qobject_cast<QAbstractScrollArea *>(object))
            area->update();
    }
    if (std::exchange(focusIsMovedByKeys, isMovedByKeys) != isMovedByKeys) {
        if (QWidget *focused = QApplication::focusWidget())
            focused->update();
    }
    return QProxyStyle::eventFilter(object, event);
}

bool TouchStyle::showsFocus(const QStyleOption &option) const
{
    return focusIsMovedByKeys && option.state.testFlag(State_HasFocus);
}

void TouchStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    // No control of this style changes its appearance under a hovering mouse.
    widget->setAttribute(Qt::WA_Hover, false);
    if (has(widget, Controls::captionProperty))
        widget->setForegroundRole(QPalette::PlaceholderText);
}

void TouchStyle::unpolish(QWidget *widget)
{
    if (has(widget, Controls::captionProperty))
        widget->setForegroundRole(QPalette::WindowText);
    QProxyStyle::unpolish(widget);
}

void TouchStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    switch (element) {
    case PE_Frame:
        if (qobject_cast<const QFrame *>(widget)) // scroll areas are frames as well
            fillRounded(painter, option->rect, sheetRadius, option->palette.brush(QPalette::Base));
        if (showsFocus(*option))
            drawFocusRing(painter, option->rect, sheetRadius, option->palette);
        break;
    case PE_FrameTabWidget: {
        const QBrush sheet = option->palette.brush(QPalette::Base);
        fillRounded(painter, option->rect, sheetRadius, sheet);
        const auto *frame = qstyleoption_cast<const QStyleOptionTabWidgetFrame *>(option);
        // The first tab continues the left edge of the sheet.
        if (frame && frame->selectedTabRect.left() == frame->rect.left())
            painter->fillRect(QRect(frame->rect.topLeft(), QSize(sheetRadius, sheetRadius)), sheet);
        break;
    }
    case PE_FrameTabBarBase:
    case PE_FrameFocusRect:
    case PE_PanelItemViewRow:
        break;
    case PE_PanelLineEdit:
        // The line edit of a spin box has no frame of its own.
        if (const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
            frame && frame->lineWidth > 0)
            drawField(painter, *option);
        break;
    case PE_FrameLineEdit:
        break;
    case PE_IndicatorCheckBox:
        drawCheckIndicator(painter, *option);
        break;
    case PE_IndicatorRadioButton:
        drawRadioIndicator(painter, *option);
        break;
    case PE_PanelMenu:
        painter->fillRect(option->rect, option->palette.brush(QPalette::Base));
        break;
    case PE_FrameMenu:
        strokeRounded(painter, option->rect, 1, option->palette.color(QPalette::Mid), outline);
        break;
    default:
        painter->restore();
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    painter->restore();
}

void TouchStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                             const QWidget *widget) const
{
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
    const auto *tab = qstyleoption_cast<const QStyleOptionTab *>(option);
    const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
    const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
    bool isDrawn = true;
    if (element == CE_PushButton && button) {
        drawButtonFill(painter, *button, widget);
        drawButtonContents(painter, *button, widget);
        if (showsFocus(*option))
            drawFocusRing(painter, option->rect,
                          isChooser(*button, widget) ? fieldRadius : sheetRadius, option->palette);
    } else if (element == CE_TabBarTabShape && tab) {
        drawTab(painter, *tab);
    } else if (element == CE_TabBarTabLabel && tab) {
        drawTabLabel(painter, *tab);
        if (showsFocus(*option))
            drawFocusRing(painter, option->rect, sheetRadius, option->palette);
    } else if (element == CE_MenuItem && item) {
        drawMenuItem(painter, *item);
    } else if (element == CE_ShapedFrame && frame &&
               (frame->frameShape == QFrame::HLine || frame->frameShape == QFrame::VLine)) {
        // Separators are not drawn; space separates the panes of a page.
    } else {
        isDrawn = false;
    }
    painter->restore();
    if (!isDrawn) {
        QProxyStyle::drawControl(element, option, painter, widget);
        if ((element == CE_CheckBox || element == CE_RadioButton) && showsFocus(*option)) {
            painter->save();
            painter->setRenderHint(QPainter::Antialiasing);
            drawFocusRing(painter, option->rect, fieldRadius, option->palette);
            painter->restore();
        }
    }
}

void TouchStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                    QPainter *painter, const QWidget *widget) const
{
    if (control != CC_ScrollBar && control != CC_SpinBox) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    if (control == CC_SpinBox) {
        drawField(painter, *option);
    } else {
        // The bar is opaque and has the background colour of the area that it scrolls.
        const QWidget *container = widget ? widget->parentWidget() : nullptr;
        const auto *area =
            container ? qobject_cast<const QAbstractScrollArea *>(container->parentWidget())
                      : nullptr;
        const bool hasFrame = area && area->frameShape() != QFrame::NoFrame;
        painter->fillRect(option->rect,
                          option->palette.brush(hasFrame ? QPalette::Base : QPalette::Window));
        QRectF handle = subControlRect(control, option, SC_ScrollBarSlider, widget);
        constexpr qreal beside = (scrollBarExtent - scrollHandle) / 2.0;
        const bool isUpright = handle.height() > handle.width();
        handle.adjust(isUpright ? beside : 0, isUpright ? 0 : beside, isUpright ? -beside : 0,
                      isUpright ? 0 : -beside);
        fillRounded(painter, handle, scrollHandle / 2.0, option->palette.brush(QPalette::Mid));
    }
    painter->restore();
}

QRect TouchStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                                 SubControl subControl, const QWidget *widget) const
{
    if (control == CC_SpinBox) {
        if (subControl == SC_SpinBoxEditField)
            return option->rect.adjusted(besideField, outline, -besideField, -outline);
        return subControl == SC_SpinBoxFrame ? option->rect : QRect();
    }
    if (control == CC_ScrollBar) {
        const auto *bar = qstyleoption_cast<const QStyleOptionSlider *>(option);
        const QRect &rect = option->rect;
        switch (subControl) {
        case SC_ScrollBarSubLine:
        case SC_ScrollBarAddLine:
        case SC_ScrollBarFirst:
        case SC_ScrollBarLast:
            return {};
        case SC_ScrollBarGroove:
            return rect;
        default:
            break;
        }
        if (!bar)
            return rect;
        const bool isUpright = bar->orientation == Qt::Vertical;
        const int length = isUpright ? rect.height() : rect.width();
        const int range = bar->maximum - bar->minimum;
        const double shown = double(bar->pageStep) / std::max(1, range + bar->pageStep);
        const int handle =
            range > 0 ? std::min(length, std::max(leastHandle, int(length * shown))) : length;
        const int begin = sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition,
                                                  length - handle, bar->upsideDown);
        const auto part = [&](int from, int to) {
            return isUpright ? QRect(rect.left(), rect.top() + from, rect.width(), to - from)
                             : QRect(rect.left() + from, rect.top(), to - from, rect.height());
        };
        if (subControl == SC_ScrollBarSlider)
            return part(begin, begin + handle);
        return subControl == SC_ScrollBarSubPage ? part(0, begin) : part(begin + handle, length);
    }
    return QProxyStyle::subControlRect(control, option, subControl, widget);
}

QRect TouchStyle::subElementRect(SubElement element, const QStyleOption *option,
                                 const QWidget *widget) const
{
    if (element == SE_TabWidgetTabContents)
        return QProxyStyle::subElementRect(SE_TabWidgetTabPane, option, widget);
    if (element == SE_LineEditContents) {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (frame && frame->lineWidth == 0)
            return option->rect;
        return option->rect.adjusted(besideField, outline, -besideField, -outline);
    }
    return QProxyStyle::subElementRect(element, option, widget);
}

QSize TouchStyle::sizeFromContents(ContentsType type, const QStyleOption *option,
                                   const QSize &contents, const QWidget *widget) const
{
    switch (type) {
    case CT_PushButton: {
        const auto *button = qstyleoption_cast<const QStyleOptionButton *>(option);
        if (!button)
            break;
        const QSize icon = button->icon.isNull() ? QSize(0, 0) : button->iconSize;
        // `contents` includes the icon of the button and 4 pixels beside it.
        const int counted = 4 - (pictureColumn(*button, widget) - icon.width());
        const int picture =
            has(widget, Controls::leadingProperty) ? Controls::pictureExtent : icon.height();
        const int high = std::max(icon.isEmpty() ? plainHeight : picture + 2 * aroundPicture,
                                  contents.height() + 2 * aroundPicture);
        if (button->text.isEmpty() && !icon.isEmpty())
            return {std::max(icon.width() + 2 * aroundPicture, leastTarget),
                    std::max(icon.height() + 2 * aroundPicture, leastTarget)};
        const int before = icon.isEmpty() ? besideText : aroundPicture + besidePicture - counted;
        const int spare = leadsOn(widget) && !icon.isEmpty() ? 2 * besideDoorPicture : 0;
        const int wide = contents.width() + before + spare + roomAfterText(*button, widget);
        return {std::max(wide, leastTarget), high};
    }
    case CT_LineEdit: {
        const auto *frame = qstyleoption_cast<const QStyleOptionFrame *>(option);
        if (frame && frame->lineWidth == 0)
            return contents;
        return {contents.width() + 2 * besideField, std::max(contents.height() + 8, plainHeight)};
    }
    case CT_SpinBox:
        return {contents.width() + 2 * besideField, std::max(contents.height() + 8, plainHeight)};
    case CT_CheckBox:
    case CT_RadioButton: {
        const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
        return size.expandedTo({0, rowHeight});
    }
    case CT_TabWidget:
        return contents;
    case CT_TabBarTab:
        return {contents.width(), std::max(contents.height(), plainHeight)};
    case CT_MenuItem: {
        const auto *item = qstyleoption_cast<const QStyleOptionMenuItem *>(option);
        if (item && item->menuItemType == QStyleOptionMenuItem::Separator)
            return {contents.width(), menuPadding / 2};
        return {contents.width() + 2 * menuPadding, std::max(contents.height(), plainHeight)};
    }
    default:
        break;
    }
    return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

QPixmap TouchStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap &picture,
                                        const QStyleOption *option) const
{
    if (mode != QIcon::Disabled)
        return QProxyStyle::generatedIconPixmap(mode, picture, option);
    const QRgb text = option->palette.color(QPalette::Disabled, QPalette::ButtonText).rgb();
    const QRgb fill = option->palette.color(QPalette::Disabled, QPalette::Button).rgb();
    const bool isDark = qGray(fill) < qGray(text);
    QImage image = picture.toImage().convertToFormat(QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (QRgb &pixel : std::span(line, static_cast<std::size_t>(image.width()))) {
            const int strength = isDark ? qGray(pixel) : opaque - qGray(pixel);
            const int cover = faintest + (opaque - faintest) * strength / opaque;
            pixel = qRgba(qRed(text), qGreen(text), qBlue(text), qAlpha(pixel) * cover / opaque);
        }
    }
    return QPixmap::fromImage(image);
}

int TouchStyle::pixelMetric(PixelMetric metric, const QStyleOption *option,
                            const QWidget *widget) const
{
    switch (metric) {
    case PM_DefaultFrameWidth:
        return qobject_cast<const QFrame *>(widget) ? scrollAreaFrame : outline;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorExtent;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
        return fieldRadius;
    case PM_ScrollBarExtent:
        return scrollBarExtent;
    case PM_ScrollBarSliderMin:
        return leastHandle;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_TabBarBaseHeight:
    case PM_TabBarBaseOverlap:
    case PM_TabBarTabOverlap:
    case PM_TabBarTabShiftHorizontal:
    case PM_TabBarTabShiftVertical:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_TabBarTabHSpace:
        return 2 * besideText;
    case PM_MenuPanelWidth:
        return outline;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int TouchStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *returnData) const
{
    switch (hint) {
    case SH_ItemView_ActivateItemOnSingleClick:
    case SH_ScrollBar_Transient:
    case SH_EtchDisabledText:
    case SH_Menu_Scrollable:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}
