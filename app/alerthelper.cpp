// SPDX-License-Identifier: MIT
#include "app/alerthelper.h"

AlertHelper::~AlertHelper() = default;

void AlertHelper::initialise() {}

void AlertHelper::alert(bool /*on*/) {}
