// SPDX-License-Identifier: MIT
#include "app/filechooser.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QEvent>
#include <QFileDialog>
#include <QLineEdit>
#include <QSettings>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

constexpr int pointSize = 14;
constexpr int smallestControl = 36; // pixels

class TallRows : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override
    {
        return QStyledItemDelegate::sizeHint(option, index).expandedTo({0, smallestControl});
    }
};

/// A file dialog with controls for a finger. If Qt uses the native dialog of the desktop, that is
/// not changed, because it does not consist of these widgets.
class TouchFileDialog : public QFileDialog
{
public:
    TouchFileDialog(QWidget *window, const QString &caption, const QString &folder,
                    const QString &filter)
        : QFileDialog(window, caption, folder, filter)
    {
        setFileMode(ExistingFile);
        setViewMode(List);
        QFont larger = font();
        larger.setPointSize(pointSize);
        setFont(larger);
        for (auto *button : findChildren<QAbstractButton *>())
            button->setMinimumSize(smallestControl, smallestControl);
        for (auto *edit : findChildren<QLineEdit *>())
            edit->setMinimumHeight(smallestControl);
        for (auto *box : findChildren<QComboBox *>())
            box->setMinimumHeight(smallestControl);
        setItemDelegate(new TallRows(this));
        if (auto *places = findChild<QWidget *>(u"sidebar"_s))
            places->hide();
        setPalette(window->palette()); // a window does not inherit it from its parent
        fit();
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *object, QEvent *event) override
    {
        if (object == parent() && event->type() == QEvent::Resize)
            fit();
        return QFileDialog::eventFilter(object, event);
    }

private:
    void fit()
    {
        setMaximumSize(parentWidget()->size());
        setGeometry(parentWidget()->geometry());
    }
};

/// Restores the settings of file dialogs, which Qt shares between all programs. The appearance of
/// this dialog must not change the dialogs of other programs.
class SharedAppearance
{
public:
    SharedAppearance()
    {
        settings.beginGroup(u"FileDialog"_s);
        const QStringList keys = settings.childKeys();
        for (const QString &key : keys)
            before[key] = settings.value(key);
    }
    ~SharedAppearance()
    {
        settings.remove(QString());
        for (auto entry = before.cbegin(); entry != before.cend(); ++entry)
            settings.setValue(entry.key(), entry.value());
    }
    SharedAppearance(const SharedAppearance &) = delete;
    SharedAppearance &operator=(const SharedAppearance &) = delete;

private:
    QSettings settings{QSettings::UserScope, u"QtProject"_s};
    QVariantMap before;
};

} // namespace

QString FileChooser::openFile(QWidget *window, const QString &caption, const QString &folder,
                              const QString &filter)
{
    const SharedAppearance kept; // destroyed after the dialog, whose destructor writes the settings
    TouchFileDialog dialog(window, caption, folder, filter);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}
