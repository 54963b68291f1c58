// SPDX-License-Identifier: MIT
#include "app/filechooser.h"

#include <array>

#include <QAbstractButton>
#include <QComboBox>
#include <QCoreApplication>
#include <QEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>
#include <QStandardPaths>
#include <QStyledItemDelegate>

using namespace Qt::StringLiterals;

namespace {

constexpr int smallestControl = 48; // pixels

/// The controls that are not needed to choose a file, and would take room on a phone. The list has
/// only files of the one type that can be chosen.
constexpr std::array needless{"sidebar"_L1,         "lookInLabel"_L1,    "forwardButton"_L1,
                              "newFolderButton"_L1, "listModeButton"_L1, "detailModeButton"_L1,
                              "fileNameLabel"_L1,   "fileTypeLabel"_L1,  "fileTypeCombo"_L1};

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
        setFont(window->font());
        addPlaces();
        for (auto *button : findChildren<QAbstractButton *>())
            button->setMinimumSize(smallestControl, smallestControl);
        for (auto *edit : findChildren<QLineEdit *>())
            edit->setMinimumHeight(smallestControl);
        for (auto *box : findChildren<QComboBox *>())
            box->setMinimumHeight(smallestControl);
        setItemDelegate(new TallRows(this));
        for (const QLatin1StringView name : needless) {
            if (auto *control = findChild<QWidget *>(name))
                control->hide();
        }
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
    /// Adds buttons that lead to the folders where sounds usually are.
    void addPlaces()
    {
        auto *grid = qobject_cast<QGridLayout *>(layout());
        if (!grid)
            return;
        auto *row = new QHBoxLayout;
        grid->addLayout(row, grid->rowCount(), 0, 1, -1);
        const auto add = [this, row](const QString &name, const QString &text,
                                     QStandardPaths::StandardLocation location) {
            const QString place = QStandardPaths::writableLocation(location);
            auto *button = new QPushButton(text);
            button->setObjectName(name);
            button->setAutoDefault(false);
            button->setEnabled(QFileInfo(place).isDir());
            connect(button, &QPushButton::clicked, this, [this, place] { setDirectory(place); });
            row->addWidget(button);
        };
        add(u"homeButton"_s, QCoreApplication::translate("ShopWindow", "Home"),
            QStandardPaths::HomeLocation);
        add(u"musicButton"_s, QCoreApplication::translate("ShopWindow", "Music"),
            QStandardPaths::MusicLocation);
    }

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
