// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

namespace FileChooser {

/// Lets the user select an existing file in a modal dialog, which keeps the size of `window` when
/// that is rotated. Returns the path, or an empty string if no file was selected. The arguments are
/// those of QFileDialog::getOpenFileName(), whose dialog is too large for a phone in portrait and
/// has controls too small for a finger.
QString openFile(QWidget *window, const QString &caption, const QString &folder,
                 const QString &filter);

} // namespace FileChooser
