// SPDX-License-Identifier: MIT
// What the status line of the menu bar says.
#pragma once

#include <string>

namespace glimmerfall {

struct StatusCaptions {
  std::string mnuScore;
  std::string mnuCount;
  std::string mnuMatchCount;
};

StatusCaptions CurrentCaptions();

}  // namespace glimmerfall
