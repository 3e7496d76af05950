#include "tests/properties/random_source.h"

#include <chrono>
#include <cstdlib>

#include "tests/support/harden.h"

namespace {

constexpr std::uint64_t kOrdinarySeed = 20261121;

}  // namespace

std::string Random::Bytes(std::size_t most) {
  std::string bytes(Below(OneIn(4) ? most + 1 : most / 16 + 1), '\0');
  for (char& byte : bytes) byte = static_cast<char>(Below(256));
  return bytes;
}

std::uint64_t FirstSeed() {
  const char* seed = std::getenv("QUIRLODUINO_SEED");
  if (seed != nullptr) return std::strtoull(seed, nullptr, 10);
  if (!HardenFully()) return kOrdinarySeed;
  return static_cast<std::uint64_t>(std::chrono::system_clock::now().time_since_epoch() /
                                    std::chrono::seconds(1));
}

std::size_t CaseCount(std::size_t ordinary, std::size_t in_full) {
  const char* count = std::getenv("QUIRLODUINO_CASES");
  if (count != nullptr) return std::strtoull(count, nullptr, 10);
  return HardenFully() ? in_full : ordinary;
}
