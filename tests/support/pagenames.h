// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>

#include "base/pages.h"

Q_DECLARE_METATYPE(Page) // for test data tables

/// Number of pages of the window.
inline constexpr int PageCount = 20;

/// Makes a failed comparison print the names of pages.
char *toString(Page page);
