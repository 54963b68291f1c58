// SPDX-License-Identifier: MIT
#include "app/alerthelper.h"

void AlertHelper::initialise() {}

void AlertHelper::alert(bool /*on*/) {}
