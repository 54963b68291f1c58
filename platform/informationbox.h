// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <QLabel>
#include <QTimer>

/// A transient banner: a text above a window that disappears after a time. It takes no clicks and
/// no focus, and screen readers announce it.
class InformationBox : public QLabel
{
    Q_OBJECT

public:
    /// How long a sentence that advises what to do is shown.
    static constexpr std::chrono::milliseconds adviceTime{8000};

    /// Shows `text` above `window` and replaces the current banner, if any; a banner that is kept
    /// stays, and is returned. The time starts when the banner becomes visible, that is, once the
    /// window is shown. `window` owns the banner, which deletes itself.
    static InformationBox *information(QWidget *window, const QString &text,
                                       std::chrono::milliseconds time);

    /// From now on no other banner replaces this one.
    void keep();

signals:
    /// The banner disappears: its time is over, or another one replaces it.
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
    bool isKept = false;
};
