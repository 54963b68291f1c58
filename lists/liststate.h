// SPDX-License-Identifier: MIT
#pragma once

#include <QList>

/// The states of a shopping list. The values are stored in the database. A list is open in states 1
/// and 2.
enum ListState : int {
    ListEmpty,         ///< a new list; stateOfList() never returns this state
    ListUnchecked,     ///< no goods checked, or no goods at all
    ListPartlyChecked, ///< some goods checked, some not
    ListFinished,      ///< all goods checked
};

/// Returns the state of a list whose goods have these check marks, one for each good.
ListState stateOfList(const QList<bool> &checkMarks);
