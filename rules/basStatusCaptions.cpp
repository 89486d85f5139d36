// SPDX-License-Identifier: MIT
#include "rules/basStatusCaptions.h"

#include "rules/basGameModes.h"
#include "rules/state/basWholeNumber.h"

namespace glimmerfall {

StatusCaptions CurrentCaptions() {
  const Mode& mode = RowOf(gameMode);
  if (mode.onlyLevel != 0) return {WholeNumber(score), mode.name, std::to_string(matchCount)};
  return {WholeNumber(score), std::to_string(level),
          std::to_string(ClearsOfLevel(level) - matchCount)};
}

}  // namespace glimmerfall
