// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

class QTextLayout;

/// A label for plain text, which may contain names that the user has typed. The text wraps between
/// words, and within a word that is much wider than the label, so that it does not widen the page.
/// For a word that is a little wider than the label, the font shrinks instead. Frame, margin and
/// indent of QLabel are ignored.
class WrapLabel : public QLabel
{
    Q_OBJECT

public:
    explicit WrapLabel(QWidget *parent = nullptr);

    /// Sets the least width in average characters of the font.
    void setLeastCharacters(int characters);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    QFont fontFor(int width) const;
    qreal layOut(QTextLayout &layout, int width) const;

    int leastCharacters = 10; // enough for most words
};
