// Random choices that can be made again: every case of a property has a seed of its own, and a case
// makes the same choices whenever it gets the same seed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <random>
#include <string>
#include <vector>

class Random {
 public:
  explicit Random(std::uint64_t seed) : engine_(seed) {}

  // 0 to `bound` - 1; bound is at least 1. Not std::uniform_int_distribution, whose choices differ
  // between libraries.
  std::size_t Below(std::size_t bound) { return static_cast<std::size_t>(engine_() % bound); }
  bool OneIn(std::size_t count) { return Below(count) == 0; }

  template <typename T>
  const T& Of(const std::vector<T>& choices) {
    return choices[Below(choices.size())];
  }
  std::string Of(std::initializer_list<const char*> choices) {
    return choices.begin()[Below(choices.size())];
  }

  // Bytes of every value; mostly few.
  std::string Bytes(std::size_t most);

 private:
  std::mt19937_64 engine_;
};

// The seed of the first case: QUIRLODUINO_SEED, or a fixed one, so that an ordinary run of the
// suite is always the same, or the clock's in the long form. Case i has this seed plus i: to repeat
// a failed case alone, set its seed and QUIRLODUINO_CASES=1.
std::uint64_t FirstSeed();

// How many cases to run: QUIRLODUINO_CASES, or `in_full` under QUIRLODUINO_HARDEN=full, or
// `ordinary`.
std::size_t CaseCount(std::size_t ordinary, std::size_t in_full);
