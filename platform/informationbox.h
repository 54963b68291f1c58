// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QLabel>
#include <QTimer>

/// A transient banner: a text over a window, gone after its time. It takes no clicks and no focus,
/// and a screen reader announces it.
class InformationBox : public QLabel
{
    Q_OBJECT

public:
    /// Shows `text` over `window` instead of the banner that shows there, if any. Its time starts
    /// when it is seen: for a window not shown yet, once that is shown. The banner belongs to
    /// `window` and deletes itself.
    static InformationBox *information(QWidget *window, const QString &text,
                                       std::chrono::milliseconds time);

signals:
    /// The banner is going: its time is over, or another takes its place.
    void gone();

protected:
    bool eventFilter(QObject *object, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    InformationBox(QWidget *window, const QString &text, std::chrono::milliseconds time);
    void place();
    void announce();
    void vanish();

    QTimer timer;
};
