// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaType>

#include "base/pages.h"

Q_DECLARE_METATYPE(Page) // for tables of tests

/// How many pages the window has.
inline constexpr int PageCount = 20;

/// So a failed comparison tells pages by their names.
char *toString(Page page);
