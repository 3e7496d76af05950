// The host's archives, read: the bytes of a member, and the facts by which a build of the IDE is
// known.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

struct zip;

// An archive open for reading. It holds the file open for its life.
class JarFile {
 public:
  // Throws Refusal, naming the path, when the archive can't be opened or fails the consistency
  // check that the installer makes too.
  explicit JarFile(const std::string& path);

  // Passes the member's uncompressed bytes to `take` in pieces. False when there is no member of
  // exactly this name. Throws Refusal, naming the path, when it can't give its bytes.
  bool Read(const std::string& member,
            const std::function<void(std::string_view piece)>& take) const;

 private:
  struct Closer {
    void operator()(zip* archive) const;
  };

  std::string path_;
  std::unique_ptr<zip, Closer> archive_;
};

struct MemberFacts {
  std::uint32_t checksum;  // the POSIX cksum of the member's uncompressed bytes
  std::uint64_t size;      // their count
};

// Reads the whole member. Throws Refusal, naming the archive's path, when the archive can't be
// opened or fails the consistency check that the installer makes too, and when it has no such
// member or can't give its bytes.
MemberFacts ReadMemberFacts(const std::string& jar, const std::string& member);
