// SPDX-License-Identifier: MIT
// The random numbers of the game.
#pragma once

#include <concepts>
#include <cstdint>

namespace platform {

/// SplitMix64 (Steele, Lea, Flood: "Fast Splittable Pseudorandom Number Generators", 2014). Its
/// whole state is one word, which makes it easy to stir.
class RandomGenerator {
 public:
  explicit RandomGenerator(std::uint64_t seed) : state_(seed) {}

  /// Stirs `seconds` into the running state. It never resets the state: two calls within one tick
  /// of the clock do not make the numbers repeat.
  void Stir(float seconds);

  /// A uniform value in [0, 1).
  double Next();

 private:
  std::uint64_t NextWord();

  std::uint64_t state_;
};

/// Stirs the wall clock, `seconds` as Timer() gives them, into the generator of the program.
void Randomize(float seconds);

/// A uniform value in [0, 1) from the generator of the program.
double Rnd();

/// A whole number from 0 up to but without `count`, each equally likely. `count` is at least 1.
template <std::integral Number>
Number RandomBelow(Number count) {
  return static_cast<Number>(Rnd() * static_cast<double>(count));
}

}  // namespace platform
