// SPDX-License-Identifier: MIT
#include "lists/liststate.h"

ListState stateOfList(const QList<bool> &checkMarks)
{
    if (!checkMarks.contains(true))
        return ListUnchecked;
    return checkMarks.contains(false) ? ListPartlyChecked : ListFinished;
}
