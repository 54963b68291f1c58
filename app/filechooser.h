// SPDX-License-Identifier: MIT
#pragma once

class QString;
class QWidget;

namespace FileChooser {

/// Lets the person choose a file that exists, in a dialog as large as `window`, whichever way that
/// is turned meanwhile. Returns its path, or nothing when none was chosen. The arguments are those
/// of QFileDialog::getOpenFileName, whose dialog has neither room on an upright phone nor controls
/// for a finger.
QString openFile(QWidget *window, const QString &caption, const QString &folder,
                 const QString &filter);

} // namespace FileChooser
