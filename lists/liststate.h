// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/// The states of a shopping list, as they are stored. A list is open in states 1 and 2.
enum ListState : int {
    ListEmpty,         ///< only as it was created; no recomputation yields it
    ListUnchecked,     ///< nothing checked, also when there is nothing to check
    ListPartlyChecked, ///< some goods checked, some not
    ListFinished,      ///< all goods checked
};

/// The state of a list whose goods have these check marks.
ListState stateOfList(const QList<bool> &checkMarks);
