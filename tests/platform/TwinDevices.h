// SPDX-License-Identifier: MIT
// What the parts of the twin share.
#pragma once

#include <string>

#include "platform/Frame.h"

namespace twin {

void ResetDevices();
void ResetGraphs();

/// Throws platform::Error if a test has broken the thing of this name.
void ThrowIfBroken(const std::string& name);
bool IsBroken(const std::string& name);

void Show(const platform::Frame& frame);
platform::Size BitmapSize(const std::string& name);

/// The last part of a path.
std::string FileName(const std::string& path);

}  // namespace twin
