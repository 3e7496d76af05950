#include "store/location_keys.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "store/host_selection.h"
#include "tests/support/arduino_host.h"
#include "tests/support/test_store.h"

namespace {

// What the look-up of `key` gives when `text` is the file of the selected release; "none" for none.
std::string Lookup(const std::string& text, const char* key = "TOOL_SUBDIR") {
  const TestStore store({{"quirlo.exe", "tool"}, {"1.8.19/WINDOWS/locations.txt", text}});
  SelectRelease("1.8.19");
  const char* value = LookupLocation(key);
  return value == nullptr ? "none" : value;
}

struct DeliveredLocation {
  const char* key;
  const char* value;
};
void PrintTo(const DeliveredLocation& test, std::ostream* stream) {
  *stream << test.key;
}

class DeliveredLocations : public testing::TestWithParam<DeliveredLocation> {};

TEST_P(DeliveredLocations, AreFound) {
  EXPECT_EQ(Lookup(kLocations, GetParam().key), GetParam().value);
}

const DeliveredLocation kDelivered[] = {{"TOOL_SUBDIR", "hardware/tools/"},
                                        {"PLUGIN_SUBDIR", "tools/"},
                                        {"ARMLIB_SUBDIR", "hardware/tools/arm/arm-none-eabi/lib/"},
                                        {"LIBRARY_SUBDIR", "hardware/quirlo/avr/libraries/"},
                                        {"CORES_SUBDIR", "hardware/quirlo/avr/cores/"},
                                        {"KEYWORDS_SUBDIR", "lib/"},
                                        {"VERSION_SUBDIR", "lib/"},
                                        {"EXAMPLES_SUBDIR", "examples/"},
                                        {"BOARDS_SUBDIR", "hardware/quirlo/avr/"},
                                        {"ARDUINO_JAR_FILE1", "lib/pde.jar"},
                                        {"ARDUINO_JAR_FILE2", "lib/arduino-core.jar"}};

INSTANTIATE_TEST_SUITE_P(All, DeliveredLocations, testing::ValuesIn(kDelivered),
                         [](const auto& test) { return std::string(test.param.key); });

TEST(LookupLocation, NoReleaseSelectedGivesNoneAndSearchesNoFile) {
  const TestStore store(
      {{"/WINDOWS/locations.txt", kLocations}, {"1.8.19/WINDOWS/locations.txt", kLocations}});
  EXPECT_EQ(LookupLocation("TOOL_SUBDIR"), nullptr);
}

TEST(LookupLocation, AbsentOrEmptyKeyGivesNone) {
  EXPECT_EQ(Lookup(kLocations, nullptr), "none");
  EXPECT_EQ(Lookup(kLocations, ""), "none");
}

TEST(LookupLocation, UnknownKeyGivesNone) {
  EXPECT_EQ(Lookup(kLocations, "DRIVER_SUBDIR"), "none");
}

TEST(LookupLocation, ReleaseWithoutFileGivesNone) {
  const TestStore store({{"1.8.16/WINDOWS/locations.txt", kLocations},
                         {"1.8.19/WINDOWS/directory_criteria.txt", ""}});
  SelectRelease("1.8.19");
  EXPECT_EQ(LookupLocation("TOOL_SUBDIR"), nullptr);
}

TEST(LookupLocation, FileOfAReleaseWhoseNameOnlyBeginsAlikeIsNotTaken) {
  const TestStore store({{"1.8.13/WINDOWS/locations.txt", "TOOL_SUBDIR \"thirteen/\""},
                         {"1.8.1/WINDOWS/locations.txt", "TOOL_SUBDIR \"one/\""}});
  SelectRelease("1.8.1");
  EXPECT_STREQ(LookupLocation("TOOL_SUBDIR"), "one/");
}

TEST(LookupLocation, NameBehindTheReleaseMustBeExact) {
  const TestStore store({{"1.8.19/WINDOWS/locations.txt.old", kLocations},
                         {"1.8.19/windows/locations.txt", kLocations},
                         {"1.8.19/LINUX/locations.txt", kLocations},
                         {"tools/1.8.19/WINDOWS/locations.txt", kLocations}});
  SelectRelease("1.8.19");
  EXPECT_EQ(LookupLocation("TOOL_SUBDIR"), nullptr);
}

TEST(LookupLocation, FirstOfTwoFilesWins) {
  const TestStore store({{"1.8.19/WINDOWS/locations.txt", "TOOL_SUBDIR \"first/\""},
                         {"1.8.19/WINDOWS/locations.txt", "TOOL_SUBDIR \"second/\""}});
  SelectRelease("1.8.19");
  EXPECT_STREQ(LookupLocation("TOOL_SUBDIR"), "first/");
}

TEST(LookupLocation, EveryCallSearchesAnew) {
  const TestStore store({{"1.8.16/WINDOWS/locations.txt", "TOOL_SUBDIR \"sixteen/\""},
                         {"1.8.19/WINDOWS/locations.txt", "TOOL_SUBDIR \"nineteen/\""}});
  SelectRelease("1.8.19");
  EXPECT_STREQ(LookupLocation("TOOL_SUBDIR"), "nineteen/");
  SelectRelease("1.8.16");
  EXPECT_STREQ(LookupLocation("TOOL_SUBDIR"), "sixteen/");
}

TEST(LookupLocation, ResultsShareOneBuffer) {
  const TestStore store({{"quirlo.exe", "tool"}, {"1.8.19/WINDOWS/locations.txt", kLocations}});
  SelectRelease("1.8.19");
  const char* first = LookupLocation("TOOL_SUBDIR");
  EXPECT_EQ(LookupLocation("PLUGIN_SUBDIR"), first);
  EXPECT_STREQ(first, "tools/");
}

TEST(LookupLocation, EmptyValueIsAnEmptyTextAndNotNone) {
  EXPECT_EQ(Lookup("TOOL_SUBDIR \"\"\n"), "");
}

TEST(LookupLocation, ValueLongerThan255BytesIsCut) {
  const std::string value(300, 'v');
  EXPECT_EQ(Lookup("TOOL_SUBDIR \"" + value + "\"\n"), value.substr(0, 255));
}

TEST(LookupLocation, EntryAtTheEndOfThePayloadIsNotReadBeyond) {
  // The file is the store's last entry, so that the block ends with it and the sanitizer watches.
  for (const char* text : {"", "T", "TOOL_SUBDI", "TOOL_SUBDIR", "TOOL_SUBDIR ", "TOOL_SUBDIR\n\t",
                           "TOOL_SUBDIR x", "...TOOL_SUBDI"}) {
    EXPECT_EQ(Lookup(text), "none") << text;
  }
  EXPECT_EQ(Lookup("TOOL_SUBDIR\""), "");
  EXPECT_EQ(Lookup("TOOL_SUBDIR \"lib/"), "lib/");
}

}  // namespace
