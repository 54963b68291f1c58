// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

/// A label for texts with names typed by a person in them: plain text, wrapped between words where
/// possible, and within a word that is wider than the label, so that it never widens a page. It has
/// no frame, margin or indent.
class WrapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit WrapLabel(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
};
