// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QPushButton;

/// The style of the program: flat, with large controls for touch and high contrast for sunlight. It
/// has a light and a dark palette and chooses the one that matches the palette of the desktop. The
/// palette roles are used as follows:
///
/// Window is the background of a page, and Base that of a sheet with texts or fields. Button and
/// Midlight are the background of a button and a pressed button, Dark and Shadow those of the main
/// action of a page, whose text is BrightText. Mid is the outline of fields. Link marks the field
/// with the focus and the selected control. PlaceholderText is used for captions.
///
/// A flat push button has no background unless it is pressed or checked. Other controls that are
/// drawn differently are marked by the properties in Controls.
class TouchStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Uses the Fusion style of Qt for everything that is not drawn here.
    TouchStyle();

    /// Sets this style for the application, unless the user has selected one. `isStyleChosen` tells
    /// whether the option -style was given, which QApplication removes from the arguments. The
    /// environment variable QT_STYLE_OVERRIDE is checked here.
    static void applyUnlessChosen(bool isStyleChosen);

    /// Minimum width and height of a button for a finger, in device-independent pixels.
    static constexpr int leastTarget = 48;

    void polish(QPalette &palette) override;
    void polish(QApplication *application) override;
    void unpolish(QApplication *application) override;
    void polish(QWidget *widget) override;
    void unpolish(QWidget *widget) override;
    bool eventFilter(QObject *object, QEvent *event) override;
    QPalette standardPalette() const override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option,
                         SubControl subControl, const QWidget *widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption *option,
                         const QWidget *widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    /// Draws a disabled picture in the colour of disabled texts, of which none of its parts is
    /// stronger.
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap &picture,
                                const QStyleOption *option) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;

private:
    bool showsFocus(const QStyleOption &option) const;

    /// Whether keys have moved the focus last. Otherwise the focus is not drawn.
    bool focusIsMovedByKeys = false;
};
