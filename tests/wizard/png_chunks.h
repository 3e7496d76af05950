// The bytes of a PNG file, for tests that damage one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Four bytes, the highest first, as all numbers in the format are; they must lie within the text.
std::uint32_t NumberAt(const std::string& bytes, std::size_t at);
void PutNumber(std::string* bytes, std::size_t at, std::uint32_t number);

// Makes the sums of all chunks right again, so that damage gets through to the decoder. Ends at a
// chunk that reaches beyond the file.
void RepairSums(std::string* file);
