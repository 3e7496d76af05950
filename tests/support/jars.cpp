#include "tests/support/jars.h"

#include <zip.h>

#include <filesystem>
#include <stdexcept>

#include "recognition/cksum.h"

namespace {

// Advancing the value 0 by one byte shows the table's entry for it.
std::uint32_t TableEntry(std::uint32_t index) {
  const auto byte = static_cast<unsigned char>(index);
  return CksumUpdate(0, &byte, 1);
}

// The value that became `crc` by advancing over `byte`. The table's lowest bytes all differ, since
// the polynomial is odd, so the step can be undone.
std::uint32_t StepBack(std::uint32_t crc, std::uint32_t byte) {
  for (std::uint32_t index = 0; index < 256; ++index) {
    const std::uint32_t entry = TableEntry(index);
    if ((entry & 0xFF) == (crc & 0xFF)) return ((crc ^ entry) >> 8) | ((index ^ byte) << 24);
  }
  throw std::logic_error("no table entry fits");
}

}  // namespace

void WriteJar(const std::string& path, const JarMembers& members) {
  std::filesystem::create_directories(std::filesystem::path(path).parent_path());
  std::filesystem::remove(path);
  zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_EXCL, nullptr);
  if (archive == nullptr) throw std::runtime_error("can't make " + path);
  for (const auto& [name, content] : members) {
    zip_source_t* source = zip_source_buffer(archive, content.data(), content.size(), 0);
    const zip_int64_t index = zip_file_add(archive, name.c_str(), source, 0);
    if (index < 0) throw std::runtime_error("can't add " + name);
    zip_file_set_mtime(archive, static_cast<zip_uint64_t>(index), 1000000000, 0);
  }
  if (zip_close(archive) != 0) throw std::runtime_error("can't write " + path);
}

JarMembers ReadJar(const std::string& path) {
  zip_t* archive = zip_open(path.c_str(), ZIP_RDONLY | ZIP_CHECKCONS, nullptr);
  if (archive == nullptr) throw std::runtime_error("no sound archive: " + path);
  JarMembers members;
  const zip_int64_t count = zip_get_num_entries(archive, 0);
  for (zip_int64_t i = 0; i < count; ++i) {
    zip_stat_t record;
    zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &record);
    std::string content(record.size, '\0');
    zip_file_t* member = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
    const zip_int64_t read =
        member == nullptr ? -1 : zip_fread(member, content.data(), content.size());
    if (member != nullptr) zip_fclose(member);
    if (read != static_cast<zip_int64_t>(content.size())) {
      zip_discard(archive);
      throw std::runtime_error("can't read " + std::string(record.name));
    }
    members[record.name] = content;
  }
  zip_discard(archive);
  return members;
}

std::string ForgeMember(std::uint32_t checksum, std::size_t size) {
  std::string bytes(size, 'q');
  std::uint32_t wanted = ~checksum;
  std::string length_bytes;
  for (std::size_t rest = size; rest != 0; rest >>= 8) {
    length_bytes += static_cast<char>(rest & 0xFF);
  }
  for (auto byte = length_bytes.rbegin(); byte != length_bytes.rend(); ++byte) {
    wanted = StepBack(wanted, static_cast<unsigned char>(*byte));
  }
  for (int i = 0; i < 4; ++i) wanted = StepBack(wanted, 0);
  const std::uint32_t patch = CksumUpdate(0, bytes.data(), size - 4) ^ wanted;
  for (std::size_t i = 0; i < 4; ++i) {
    bytes[size - 4 + i] = static_cast<char>((patch >> (24 - 8 * i)) & 0xFF);
  }
  return bytes;
}
