#include "packager/table_files.h"

#include <gtest/gtest.h>

#include "packager/refusal.h"

namespace {

const PayloadTable kTable = {95, 1234, {{"quirlo.exe", 1224}, {"quirloduino.txt", 10}}};

const char kText[] =
    "quirloduino payload 1\n"
    "entries 2\n"
    "frame 95\n"
    "content 1234\n"
    "1224\tquirlo.exe\n"
    "10\tquirloduino.txt\n";

std::string RefusalOf(const std::string& text) {
  try {
    ParseTableText("t", text);
  } catch (const Refusal& refusal) {
    return refusal.what();
  }
  return "accepted";
}

TEST(TableText, IsWrittenAndReadBack) {
  EXPECT_EQ(TableText(kTable), kText);
  const PayloadTable table = ParseTableText("t", kText);
  EXPECT_EQ(table.frame_length, kTable.frame_length);
  EXPECT_EQ(table.content_size, kTable.content_size);
  EXPECT_EQ(table.entries, kTable.entries);
}

TEST(TableText, MalformedLinesAreNamedByTheirNumber) {
  EXPECT_EQ(RefusalOf(""), "t: line 1 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 2\n"), "t: line 1 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\n"), "t: line 2 is malformed");
  const std::string head = "quirloduino payload 1\nentries 1\nframe 95\ncontent 3\n";
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries\n"), "t: line 2 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries one\n"), "t: line 2 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries 01\n"), "t: line 2 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries -1\n"), "t: line 2 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries 1 \n"), "t: line 2 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries 18446744073709551616\n"),
            "t: line 2 is malformed");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries 1\ncontent 3\n"), "t: line 3 is malformed");
  EXPECT_EQ(RefusalOf(head + "3 a\n"), "t: line 5 is malformed");
  EXPECT_EQ(RefusalOf(head + "\ta\n"), "t: line 5 is malformed");
  EXPECT_EQ(RefusalOf(head + "3\ta"), "t: line 5 is malformed");
  EXPECT_EQ(RefusalOf(head + "3\ta\r\n"), "accepted");  // the name is judged elsewhere
}

TEST(TableText, OtherCountThanTheHeadersIsRefused) {
  const std::string text = kText;
  EXPECT_EQ(RefusalOf(text + "0\tx\n"), "t: has 3 entries and not the 2 of its header");
  EXPECT_EQ(RefusalOf(text.substr(0, text.find("10\t"))),
            "t: has 1 entries and not the 2 of its header");
  EXPECT_EQ(RefusalOf("quirloduino payload 1\nentries 0\nframe 9\ncontent 0\n"), "t: has no entry");
}

TEST(TableSource, IsThisText) {
  EXPECT_EQ(TableSource(kTable),
            "// Made by quirloduino-pack; changes to it are lost.\n"
            "#include \"store/embedded_file_store.h\"\n"
            "\n"
            "extern \"C\" const unsigned char quirloduino_payload_frame[];\n"
            "\n"
            "namespace {\n"
            "\n"
            "constexpr const char* kNames[] = {\n"
            "    \"quirlo.exe\",\n"
            "    \"quirloduino.txt\",\n"
            "};\n"
            "\n"
            "constexpr std::uint32_t kSizes[] = {\n"
            "    1224U,\n"
            "    10U,\n"
            "};\n"
            "\n"
            "const unsigned char* data[2];\n"
            "\n"
            "constexpr EmbeddedFileStore kPacked = {\n"
            "    quirloduino_payload_frame, 95U, 2U, kNames, kSizes, data};\n"
            "\n"
            "}  // namespace\n"
            "\n"
            "const EmbeddedFileStore& Store = kPacked;\n");
}

TEST(TableSource, NamesOfAForeignTableCanNotLeaveTheirQuotes) {
  const std::string source = TableSource({1, 0, {{"a\"b\\c?\?/d", 0}}});
  EXPECT_NE(source.find("    \"a\\\"b\\\\c\\?\\?/d\",\n"), std::string::npos) << source;
}

}  // namespace
