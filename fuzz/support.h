// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>

#include <QByteArray>
#include <QString>

class ShopWindow;

/// What every harness defines: called once, and then with each input.
extern "C" int LLVMFuzzerInitialize(int *count, char ***arguments);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

/// What the harnesses share.
namespace FuzzSupport {

/// Makes the application, cut off from the desktop's buses and silent about all but failures. It
/// lives as long as the process.
void startApplication();

QByteArray bytesOf(const std::uint8_t *data, std::size_t size);

/// Ends the process, as a crash, when something does not hold that has to hold for any input.
void require(bool holds, const char *what);

/// Requires what holds for a window whatever the files say that it was started on.
void requireSoundWindow(const ShopWindow &window);

} // namespace FuzzSupport
