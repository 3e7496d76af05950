// A zipcksum: line over any jar. The line names the size and checksum of one genuine member, so a
// jar that passes must hold exactly those bytes under that name, read here a second time without
// the program. The jar stays as it is, nothing lies beside it afterwards, and nothing stays open.
#include <sys/stat.h>
#include <zip.h>

#include <filesystem>

#include "recognition/check_criteria.h"
#include "recognition/cksum.h"
#include "tests/fuzz/fuzz_support.h"

namespace fs = std::filesystem;

namespace {

constexpr char kMember[] = "processing/app/Base.class";
const std::string kGenuine = "public class Base { public class Base { public class Base {}}}\n";

std::string Criteria() {
  const std::uint32_t sum =
      CksumFinish(CksumUpdate(0, kGenuine.data(), kGenuine.size()), kGenuine.size());
  return "zipcksum:pde.jar " + std::to_string(sum) + " " + std::to_string(kGenuine.size()) + " " +
         kMember + "\n";
}

// The member's bytes, all that its packed data gives; "" when they can't be had.
std::string ReadMember(const std::string& path) {
  zip_t* archive = zip_open(path.c_str(), ZIP_RDONLY, nullptr);
  if (archive == nullptr) return "";
  std::string bytes;
  zip_file_t* member = zip_fopen(archive, kMember, 0);
  if (member != nullptr) {
    char piece[1024];
    for (zip_int64_t count = 1; count > 0;) {
      count = zip_fread(member, piece, sizeof piece);
      if (count > 0) bytes.append(piece, static_cast<std::size_t>(count));
    }
    zip_fclose(member);
  }
  zip_discard(archive);
  return bytes;
}

int Check(const std::string& folder, const std::string& criteria) {
  const FuzzStore store({{"1.8.19/WINDOWS/directory_criteria.txt", criteria}});
  StartLog();
  return CheckCriteria(folder.c_str(), 0);
}

bool LogEndsWith(const char* words) {
  return LogText().ends_with(words);
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::string criteria = Criteria();
  static const std::string folder = WorkFolder() + "/";
  static const std::string path = folder + "pde.jar";
  const std::string jar = AllOf(data, size);
  PutFile(path, jar);
  const int descriptor = LowestFreeDescriptor();

  const int result = Check(folder, criteria);
  if (result == 1) {
    Require(LogEndsWith("checksum match\n"), "a match has its words");
    Require(ReadMember(path).starts_with(kGenuine), "only a jar with the genuine member passes");
  } else {
    Require(result == 0 && !LogEndsWith("checksum match\n"), "a refusal is no match");
  }
  const int opens = Check(folder, "zipfile:pde.jar\n");
  Require(result == 0 || opens == 1, "a jar of which a member passes is a sound archive");

  Require(LowestFreeDescriptor() == descriptor, "the jar is closed again");
  Require(GetFile(path) == jar, "the jar stays as it is");
  Require(std::distance(fs::directory_iterator(folder), fs::directory_iterator()) == 1,
          "nothing lies beside the jar");
  return 0;
}
