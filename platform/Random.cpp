// SPDX-License-Identifier: MIT
#include "platform/Random.h"

#include <bit>

namespace platform {

namespace {
constexpr std::uint64_t kGoldenGamma = 0x9E3779B97F4A7C15U;
constexpr double kTwoToMinus53 = 0x1.0p-53;
}  // namespace

void RandomGenerator::Stir(float seconds) {
  state_ = NextWord() ^ std::bit_cast<std::uint32_t>(seconds);
}

double RandomGenerator::Next() {
  return static_cast<double>(NextWord() >> 11U) * kTwoToMinus53;
}

std::uint64_t RandomGenerator::NextWord() {
  state_ += kGoldenGamma;
  std::uint64_t z = state_;
  z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
  z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
  return z ^ (z >> 31U);
}

}  // namespace platform
