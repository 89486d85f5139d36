// SPDX-License-Identifier: MIT
// The generator of the program.
#include <random>

#include "platform/Random.h"

namespace platform {

namespace {

RandomGenerator& Generator() {
  static RandomGenerator generator(std::random_device{}());
  return generator;
}

}  // namespace

void Randomize(float seconds) {
  Generator().Stir(seconds);
}

double Rnd() {
  return Generator().Next();
}

}  // namespace platform
