// SPDX-License-Identifier: MIT
#pragma once

#include <QProxyStyle>

class QPushButton;

/// The look of the program: calm, flat, made for a thumb and for sunlight. It draws with the roles
/// of two palettes of its own, light or dark as the desktop's palette is:
///
/// Window is the ground of a page and Base the sheet on it that is read or filled in. Button and
/// Midlight fill a button and a pressed one, Dark and Shadow the page's main action, whose text is
/// BrightText. Mid outlines what is filled in, Link marks what has the focus or is in use, and
/// PlaceholderText is for captions.
///
/// A flat push button has no fill: outside of dialogs Qt leaves that flag without a meaning. What
/// else it draws in a way of its own has one of the properties that Controls names.
class TouchStyle : public QProxyStyle
{
    Q_OBJECT

public:
    /// Over Qt's Fusion style.
    TouchStyle();

    /// Makes it the application's style, unless the person has chosen one: by -style, which
    /// QApplication takes out of its arguments, or by the environment variable QT_STYLE_OVERRIDE.
    static void applyUnlessChosen(bool isStyleChosen);

    /// Least height of what a finger is to hit, in device-independent pixels.
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
    int pixelMetric(PixelMetric metric, const QStyleOption *option,
                    const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;

private:
    bool showsFocus(const QStyleOption &option) const;

    /// The focus shows while keys move it, and never for a finger.
    bool focusIsMovedByKeys = false;
};
