// SPDX-License-Identifier: MIT
#include "app/messagepages.h"

#include <QBoxLayout>
#include <QFont>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QUrl>
#include <QVariant>

#include "app/shopwindow.h"
#include "base/frames.h"
#include "widgets/busypicture.h"
#include "widgets/controls.h"
#include "widgets/pictures.h"
#include "widgets/TrKineticScroller.h"
#include "widgets/turningpage.h"
#include "widgets/wraplabel.h"
#include "widgets/wrappingbutton.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int textIndent = 10;
/// The size of a picture within the text of a message, in pixels.
constexpr int inlineExtent = 24;

/// Returns the font of `widget`, made `difference` points larger.
QFont resized(const QWidget *widget, int difference)
{
    QFont font = widget->font();
    font.setPointSize(font.pointSize() + difference);
    return font;
}

QLabel *titleLabel(const QString &objectName)
{
    auto *title = new WrapLabel;
    title->setObjectName(objectName);
    title->setAlignment(Qt::AlignCenter);
    Controls::setBold(title);
    return title;
}

/// Creates the centred text of the confirmation and the waiting page.
QLabel *largeText(const QString &objectName, const QWidget *page)
{
    auto *text = new WrapLabel;
    text->setObjectName(objectName);
    text->setAlignment(Qt::AlignCenter);
    text->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
    text->setFont(resized(page, 1));
    return text;
}

/// The text of a scroll area, whose font shrinks for a word that is wider than the area, so that it
/// need not scroll sideways.
class FittingText : public QLabel
{
public:
    explicit FittingText(const QFont &usualFont)
        : usual(usualFont)
    {
        setFont(usual);
    }

protected:
    void resizeEvent(QResizeEvent *event) override
    {
        QLabel::resizeEvent(event);
        const auto *area = qobject_cast<QAbstractScrollArea *>(parentWidget()->parentWidget());
        if (!area)
            return;
        // If the font depended on whether the area has a scroll bar, the text could need one in the
        // larger font only.
        const int room =
            area->maximumViewportSize().width() - area->verticalScrollBar()->sizeHint().width();
        if (room == fittedRoom && text() == fittedText)
            return;
        fittedRoom = room;
        fittedText = text();
        setFont(usual);
        const int widestWord = minimumSizeHint().width() - indent();
        setFont(TextBreaking::fitting(usual, widestWord, room - indent()));
    }

private:
    const QFont usual;
    int fittedRoom = 0;
    QString fittedText;
};

/// Adds a sheet with `icon` at the top and `text` in the remaining height.
void addIconAndText(QBoxLayout *box, QWidget *icon, QWidget *text)
{
    QVBoxLayout *sheet = Frames::addSheet(box);
    sheet->addStretch(1);
    sheet->addWidget(icon);
    sheet->addWidget(text);
    sheet->addStretch(1);
}

} // namespace

void ShopWindow::buildMessagePage()
{
    TurningPage *page = addPage(PageMessage, u"messagePage"_s, QString(), QAccessible::Dialog);
    MessagePage &p = *messagePage;

    p.icon = Controls::pictureLabel(u"messageIcon"_s);
    p.title = titleLabel(u"messageTitle"_s);
    p.text = new FittingText(resized(page, -1));
    p.text->setObjectName(u"messageText"_s);
    p.text->setTextFormat(Qt::RichText);
    p.text->setWordWrap(true);
    // With other flags the label would accept the mouse moves that TrKineticScroller needs.
    p.text->setTextInteractionFlags(Qt::NoTextInteraction);
    p.text->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    p.text->setIndent(textIndent);
    // Without the provider Qt would load the pictures at the size of the file and scale them down,
    // which looks coarse.
    p.text->setResourceProvider([label = p.text](const QUrl &url) -> QVariant {
        const QSize size(inlineExtent, inlineExtent);
        return Pictures::icon(u':' + url.path()).pixmap(size, label->devicePixelRatio());
    });
    p.ok = Controls::textButton(u"messageOkButton"_s, u":/img/commit.png"_s,
                                Controls::pictureExtent, tr("OK"));

    QScrollArea *area = Controls::scrollArea(p.text);
    area->setObjectName(u"messageArea"_s);
    area->setAccessibleName(tr("Message"));
    p.scrollBar = area->verticalScrollBar();
    auto *scroller = new TrKineticScroller(area);
    scroller->enableKineticScrollFor(area);

    auto *header = new QHBoxLayout;
    header->addWidget(p.icon);
    header->addWidget(p.title, 1);

    auto *box = new QVBoxLayout(page);
    Controls::setMain(p.ok);
    page->firstFocus = p.ok;
    Controls::setPageSpacing(box);
    box->addLayout(header);
    box->addWidget(Controls::separator(QFrame::HLine));
    box->addWidget(area, 1);
    box->addWidget(Controls::separator(QFrame::HLine));
    box->addWidget(p.ok);

    Frames::pressOnEscape(page, p.ok);
    connect(p.ok, &QPushButton::clicked, this, &ShopWindow::messageBoxOkClicked);
}

void ShopWindow::buildWaitingPage()
{
    const QString heading = tr("Update in Progress");
    TurningPage *page = addPage(PageWaiting, u"waitingPage"_s, heading, QAccessible::Dialog);
    WaitingPage &p = *waitingPage;

    QLabel *title = titleLabel(u"waitingTitle"_s);
    title->setText(heading);
    auto *icon = new BusyPicture;
    icon->setObjectName(u"waitingIcon"_s);
    icon->setPicture(u":/img/info.png"_s, Controls::pictureExtent);
    QLabel *text = largeText(u"waitingText"_s, page);
    text->setText(tr("Requesting GPS coordinates. Please wait. You can cancel GPS requesting."));
    p.cancel = Controls::textButton(u"waitingCancelButton"_s, u":/img/red_round_error.svg"_s,
                                    Controls::pictureExtent, cancelText);

    auto *box = new QVBoxLayout(page);
    Controls::setPageSpacing(box);
    box->addWidget(title);
    box->addWidget(Controls::separator(QFrame::HLine));
    addIconAndText(box, icon, text);
    box->addWidget(Controls::separator(QFrame::HLine));
    box->addWidget(p.cancel);

    page->firstFocus = p.cancel;
    Frames::pressOnEscape(page, p.cancel);
    connect(p.cancel, &QPushButton::clicked, this, &ShopWindow::waitingCanceled);
}

void ShopWindow::buildConfirmationPage()
{
    TurningPage *page =
        addPage(PageConfirmation, u"confirmationPage"_s, QString(), QAccessible::Dialog);
    ConfirmationPage &p = *confirmationPage;

    p.title = titleLabel(u"confirmationTitle"_s);
    PictureLabel *icon = Controls::pictureLabel(u"confirmationIcon"_s);
    icon->setPicture(u":/img/warning_r.svg"_s, Controls::pictureExtent);
    p.text = largeText(u"confirmationText"_s, page);
    p.yes = Controls::textButton(u"confirmationYesButton"_s, u":/img/commit.png"_s,
                                 Controls::pictureExtent, tr("Yes"));
    p.no = Controls::textButton(u"confirmationNoButton"_s, u":/img/red_round_error.svg"_s,
                                Controls::pictureExtent, tr("No"));

    auto *answers = new QHBoxLayout;
    answers->setSpacing(Controls::stackGap);
    answers->addWidget(p.yes, 1);
    answers->addWidget(p.no, 1);

    auto *box = new QVBoxLayout(page);
    Controls::setPageSpacing(box);
    box->addWidget(p.title);
    box->addWidget(Controls::separator(QFrame::HLine));
    addIconAndText(box, icon, p.text);
    box->addWidget(Controls::separator(QFrame::HLine));
    box->addLayout(answers);

    page->firstFocus = p.no;
    Frames::pressOnEscape(page, p.no);
    // askQuestion() connects "Yes".
    connect(p.no, &QPushButton::clicked, this, &ShopWindow::messageBoxOkClicked);
}

void ShopWindow::fillMessage(const QString &title, const QString &text, const QString &picture,
                             int returnPage)
{
    messagePage->title->setText(title);
    pageStack->widget(PageMessage)->setAccessibleName(title);
    messagePage->text->setText(text);
    messagePage->text->setAccessibleName(QString());
    messagePage->text->adjustSize();
    messagePage->scrollBar->setSliderPosition(0);
    if (!picture.isEmpty())
        messagePage->icon->setPicture(picture, Controls::pictureExtent);
    messageReturnPage = returnPage;
}

void ShopWindow::showMessage(const QString &title, const QString &text, const QString &picture,
                             int returnPage)
{
    fillMessage(title, text, picture, returnPage);
    pageStack->setCurrentIndex(PageMessage);
}

void ShopWindow::askQuestion(const QString &title, const QString &text,
                             void (ShopWindow::*confirmed)(), int returnPage)
{
    confirmationPage->title->setText(title);
    pageStack->widget(PageConfirmation)->setAccessibleName(title);
    confirmationPage->text->setText(text);
    connectAnew(confirmationPage->yes, confirmed);
    messageReturnPage = returnPage;
    pageStack->setCurrentIndex(PageConfirmation);
}

void ShopWindow::warnNotSelected()
{
    showMessage(tr("Not selected"), tr("Please select one of the items in a list"),
                u":/img/warning_r.svg"_s, pageStack->currentIndex());
}

void ShopWindow::warnEmptyName()
{
    showMessage(tr("Name field is Empty"), tr("Please fill the Name field"),
                u":/img/warning_r.svg"_s, pageStack->currentIndex());
}

QString ShopWindow::typedName(const QLineEdit *field)
{
    if (field->text().isEmpty())
        warnEmptyName();
    return field->text();
}

void ShopWindow::showWaiting()
{
    // Otherwise cancelling a second wait would lead to the waiting page itself.
    if (pageStack->currentIndex() != PageWaiting)
        waitingReturnPage = pageStack->currentIndex();
    pageStack->setCurrentIndex(PageWaiting);
}

void ShopWindow::messageBoxOkClicked()
{
    messagePage->text->clear();
    pageStack->setCurrentIndex(messageReturnPage);
}

void ShopWindow::waitingCanceled()
{
    endWaiting();
    pageStack->setCurrentIndex(waitingReturnPage);
}
