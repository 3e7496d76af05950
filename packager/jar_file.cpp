#include "packager/jar_file.h"

#include <zip.h>

#include <array>
#include <limits>
#include <memory>

#include "packager/refusal.h"
#include "recognition/cksum.h"

namespace {

struct ArchiveCloser {
  void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveCloser>;

struct MemberCloser {
  void operator()(zip_file_t* member) const { zip_fclose(member); }
};
using Member = std::unique_ptr<zip_file_t, MemberCloser>;

Archive OpenArchive(const std::string& jar) {
  int code = 0;
  Archive archive(zip_open(jar.c_str(), ZIP_CHECKCONS | ZIP_RDONLY, &code));
  if (archive == nullptr) {
    zip_error_t error;
    zip_error_init_with_code(&error, code);
    const std::string reason = zip_error_strerror(&error);
    zip_error_fini(&error);
    throw Refusal(jar, "can't be opened (" + reason + ")");
  }
  return archive;
}

[[noreturn]] void RefuseMember(const std::string& jar, const std::string& member, zip_t* archive) {
  throw Refusal(jar, member + " can't be read (" + zip_strerror(archive) + ")");
}

}  // namespace

MemberFacts ReadMemberFacts(const std::string& jar, const std::string& member) {
  const Archive archive = OpenArchive(jar);
  const zip_int64_t index = zip_name_locate(archive.get(), member.c_str(), 0);
  if (index < 0) throw Refusal(jar, "has no " + member);
  const Member file(zip_fopen_index(archive.get(), static_cast<zip_uint64_t>(index), 0));
  if (file == nullptr) RefuseMember(jar, member, archive.get());

  MemberFacts facts{0, 0};
  std::array<char, 4096> buffer{};
  for (;;) {
    const zip_int64_t got = zip_fread(file.get(), buffer.data(), buffer.size());
    if (got < 0) {
      throw Refusal(jar, member + " can't be read (" +
                             zip_error_strerror(zip_file_get_error(file.get())) + ")");
    }
    if (got == 0) break;
    facts.checksum = CksumUpdate(facts.checksum, buffer.data(), static_cast<std::size_t>(got));
    facts.size += static_cast<std::uint64_t>(got);
  }
  if (facts.size > std::numeric_limits<std::uint32_t>::max()) {
    throw Refusal(jar, member + " is too large for a zipcksum line");
  }
  facts.checksum = CksumFinish(facts.checksum, facts.size);
  return facts;
}
