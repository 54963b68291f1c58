// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include <QByteArray>
#include <QString>

class QGeoPositionInfo;
class ShopWindow;

/// The functions of every harness: the first is called once, the second for each input.
extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// Functions shared by the harnesses.
namespace FuzzSupport {

/// Creates the application, without the desktop's buses and with no messages except failures. It
/// exists as long as the process.
void startApplication();

QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// Ends the process with a crash if a condition that must hold for any input is false.
void require(bool holds, const char *what);

/// Checks the conditions that must hold for a position, whatever was received.
void requireSoundPosition(const QGeoPositionInfo &position);

/// Checks the conditions that must hold for a window, whatever files it was started with.
void requireSoundWindow(const ShopWindow &window);

} // namespace FuzzSupport
