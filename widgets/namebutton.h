// SPDX-License-Identifier: MIT
#pragma once

#include <QPushButton>

/// A button whose text is a name. An ampersand in the name is drawn and is not a mnemonic. A name
/// that is too long is elided, so that it does not widen the page. On a tight page the text may be
/// smaller. text() returns the full name.
class NameButton : public QPushButton
{
    Q_OBJECT

public:
    explicit NameButton(QWidget *parent = nullptr);

    /// Shows `name`, which is also the accessible name.
    void setName(const QString &name);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

protected:
    void initStyleOption(QStyleOptionButton *option) const override;
    void paintEvent(QPaintEvent *event) override;

private:
    QSize sizeFor(int textWidth) const;
    int requiredTextWidth() const;
    int roomForText() const;
    QFont drawnFont() const;
};
