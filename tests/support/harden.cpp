#include "tests/support/harden.h"

#include <cstdio>
#include <cstdlib>
#include <random>

bool HardenFully() {
  const char* depth = std::getenv("QUIRLODUINO_HARDEN");
  return depth != nullptr && std::string(depth) == "full";
}

long HardenStride(long stride) {
  return HardenFully() ? 1 : stride;
}

int HardenCount(int full, int brief) {
  return HardenFully() ? full : brief;
}

unsigned HardenSeed(const std::string& loop) {
  const char* given = std::getenv("QUIRLODUINO_SEED");
  const unsigned seed = given != nullptr ? static_cast<unsigned>(std::strtoul(given, nullptr, 10))
                                         : std::random_device()();
  std::printf("%s: QUIRLODUINO_SEED=%u\n", loop.c_str(), seed);
  std::fflush(stdout);
  return seed;
}

void HardenReport(const std::string& figures) {
  std::printf("harden: %s\n", figures.c_str());
  std::fflush(stdout);
}

std::string HardenNumber(long number) {
  std::string text = std::to_string(number);
  for (std::size_t i = text.size(); i > 3;) {
    i -= 3;
    text.insert(i, ",");
  }
  return text;
}
