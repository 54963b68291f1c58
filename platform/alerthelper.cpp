// SPDX-License-Identifier: MIT
#include "platform/alerthelper.h"

#include "platform/devicealert.h"

AlertHelper::~AlertHelper()
{
    alert(false);
}

void AlertHelper::initialise()
{
    DeviceAlert::instance();
}

void AlertHelper::alert(bool on)
{
    if (on)
        DeviceAlert::instance().start();
    else
        DeviceAlert::instance().stop();
}
