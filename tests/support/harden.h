// How deep the tests of the label "harden" go. QUIRLODUINO_HARDEN=full in the environment asks for
// every step of every loop; without it each loop takes a few of its steps, enough to show in the
// ordinary suite that it works.
#pragma once

#include <string>

bool HardenFully();

// 1 in full depth, otherwise `stride`: the distance from one step to the next.
long HardenStride(long stride);

// `full` or `brief`, by the depth.
int HardenCount(int full, int brief);

// The seed of a loop with random steps: QUIRLODUINO_SEED, or else a new one. It is printed.
unsigned HardenSeed(const std::string& loop);

// Prints one line of a loop's figures, for scripts to collect: "harden: " and the text.
void HardenReport(const std::string& figures);

// A count as people write it: 1,234.
std::string HardenNumber(long number);
