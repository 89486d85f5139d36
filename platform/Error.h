// SPDX-License-Identifier: MIT
// The one failure that the services of the platform report.
#pragma once

#include <stdexcept>
#include <string>

namespace platform {

/// A service that could not be had. what() is a description for the player: which file or device,
/// and what is wrong with it.
class Error : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace platform
