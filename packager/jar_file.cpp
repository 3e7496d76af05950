#include "packager/jar_file.h"

#include <zip.h>

#include <array>
#include <limits>
#include <memory>

#include "packager/refusal.h"
#include "recognition/cksum.h"

namespace {

struct MemberCloser {
  void operator()(zip_file_t* member) const { zip_fclose(member); }
};
using Member = std::unique_ptr<zip_file_t, MemberCloser>;

}  // namespace

void JarFile::Closer::operator()(zip* archive) const {
  zip_discard(archive);
}

JarFile::JarFile(const std::string& path) : path_(path) {
  int code = 0;
  archive_.reset(zip_open(path.c_str(), ZIP_CHECKCONS | ZIP_RDONLY, &code));
  if (archive_ != nullptr) return;
  zip_error_t error;
  zip_error_init_with_code(&error, code);
  const std::string reason = zip_error_strerror(&error);
  zip_error_fini(&error);
  throw Refusal(path, "can't be opened (" + reason + ")");
}

bool JarFile::Read(const std::string& member,
                   const std::function<void(std::string_view piece)>& take) const {
  const zip_int64_t index = zip_name_locate(archive_.get(), member.c_str(), 0);
  if (index < 0) return false;
  const Member file(zip_fopen_index(archive_.get(), static_cast<zip_uint64_t>(index), 0));
  if (file == nullptr) {
    throw Refusal(path_, member + " can't be read (" + zip_strerror(archive_.get()) + ")");
  }
  std::array<char, 4096> buffer{};
  for (;;) {
    const zip_int64_t got = zip_fread(file.get(), buffer.data(), buffer.size());
    if (got < 0) {
      throw Refusal(path_, member + " can't be read (" +
                               zip_error_strerror(zip_file_get_error(file.get())) + ")");
    }
    if (got == 0) return true;
    take({buffer.data(), static_cast<std::size_t>(got)});
  }
}

MemberFacts ReadMemberFacts(const std::string& jar, const std::string& member) {
  MemberFacts facts{0, 0};
  const bool is_there = JarFile(jar).Read(member, [&facts](std::string_view piece) {
    facts.checksum = CksumUpdate(facts.checksum, piece.data(), piece.size());
    facts.size += piece.size();
  });
  if (!is_there) throw Refusal(jar, "has no " + member);
  if (facts.size > std::numeric_limits<std::uint32_t>::max()) {
    throw Refusal(jar, member + " is too large for a zipcksum line");
  }
  facts.checksum = CksumFinish(facts.checksum, facts.size);
  return facts;
}
