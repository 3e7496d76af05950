// Payload trees for the packager's tests, and runs of the built packager on them.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "tests/support/run_program.h"
#include "tests/support/temp_dir.h"

// A locations.txt with all eleven keys.
std::string SoundLocations();

// A directory_criteria.txt that proves one class of the archive that SoundLocations names.
std::string SoundCriteria();

// A small payload with three releases that passes every rule: name to content.
std::map<std::string, std::string> SoundPayload();

void WriteTree(const std::string& folder, const std::map<std::string, std::string>& files);

// Runs quirloduino-pack.
ProgramResult RunPack(const std::vector<std::string>& arguments,
                      const ProgramOptions& options = {});

// A sound payload in tree(), which a test may spoil, and a folder to pack into.
class PayloadTest : public testing::Test {
 protected:
  PayloadTest();

  std::string tree() const { return dir_ / "tree"; }
  std::string output() const { return dir_ / "out"; }
  std::string In(const std::string& name) const { return tree() + "/" + name; }

  void Write(const std::string& name, const std::string& content) { WriteFile(In(name), content); }
  void Remove(const std::string& name);

  ProgramResult Pack(std::vector<std::string> more = {}) const;

  // Packs once and expects success, with what the payload asks of its users and no other word.
  void ExpectPacked(const std::vector<std::string>& more = {}) const;

  // Packs over the result of an earlier, sound run and expects exactly this one line, status 2 and
  // nothing in the output folder: neither something new nor what the earlier run had left.
  void ExpectRefused(const std::string& line) const;

  TempDir dir_;
};
