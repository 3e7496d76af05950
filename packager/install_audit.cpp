#include "packager/install_audit.h"

#include <algorithm>
#include <map>
#include <string_view>
#include <system_error>
#include <utility>

#include "engine/library_removal.h"
#include "packager/entry_names.h"
#include "packager/file_io.h"
#include "packager/jar_file.h"
#include "packager/progress_bar.h"
#include "packager/refusal.h"
#include "store/payload_format.h"

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kShownMarkerSize = 80;

// Reads pieces and tells how they differ from what was expected.
class Comparison {
 public:
  explicit Comparison(std::string_view expected) : expected_(expected) {}

  void Take(std::string_view piece) {
    if (!first_difference_) {
      const std::string_view rest = expected_.substr(std::min(size_, expected_.size()));
      const std::size_t shared = std::min(rest.size(), piece.size());
      const auto different =
          std::mismatch(piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(shared),
                        rest.begin())
              .first;
      const auto same = static_cast<std::size_t>(different - piece.begin());
      if (same < shared) first_difference_ = size_ + same;
    }
    size_ += piece.size();
  }

  // Empty when all bytes were those expected.
  std::string Words() const {
    if (size_ != expected_.size()) return SizeWords(size_, expected_.size());
    if (first_difference_) return "differs at byte " + std::to_string(*first_difference_);
    return {};
  }

  static std::string SizeWords(std::uintmax_t found, std::uintmax_t expected) {
    return "has " + std::to_string(found) + (found == 1 ? " byte" : " bytes") + ", not " +
           std::to_string(expected);
  }

 private:
  std::string_view expected_;
  std::size_t size_ = 0;
  std::optional<std::size_t> first_difference_;
};

// What an install leaves at one place.
struct Expected {
  std::size_t entry;
  Foretold foretold;
};

// In table order. The last entry that comes to a place decides what it holds. Windows takes names
// that differ in the case of letters for one, archives don't.
std::vector<Expected> ExpectedIn(const PayloadView& payload, const InstallForecast& forecast) {
  std::map<std::pair<std::string, std::string>, Expected> by_place;
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    Foretold foretold = forecast.At(i);
    if (foretold.action == DispositionAction::kPassOver) continue;
    if (foretold.action == DispositionAction::kFail) {
      throw Refusal(payload.entries[i].name, "the install of this payload fails at this entry");
    }
    const bool is_member = foretold.action == DispositionAction::kWriteObject;
    const std::pair<std::string, std::string> place(FoldCase(LandingPath(foretold)),
                                                    is_member ? foretold.file : std::string());
    by_place.insert_or_assign(place, Expected{i, std::move(foretold)});
  }
  std::vector<Expected> expected;
  expected.reserve(by_place.size());
  for (auto& [place, what] : by_place) expected.push_back(std::move(what));
  std::sort(expected.begin(), expected.end(),
            [](const Expected& a, const Expected& b) { return a.entry < b.entry; });
  return expected;
}

class Auditor {
 public:
  Auditor(const PayloadView& payload, const fs::path& host) : payload_(payload), host_(host) {}

  void Look(const Expected& expected) {
    const std::size_t before = audit_.findings.size();
    if (expected.foretold.action == DispositionAction::kRemove) {
      LookForRetired(expected.foretold);
    } else if (expected.foretold.action == DispositionAction::kWriteObject) {
      LookAtMember(expected.foretold);
    } else if (payload_.entries[expected.entry].name == kVersionMarkerName) {
      LookAtMarker(expected.foretold);
    } else {
      LookAtFile(expected.foretold);
    }
    for (std::size_t i = before; i < audit_.findings.size(); ++i) {
      audit_.findings[i].antivirus_hint = expected.foretold.antivirus_hint;
    }
    CountLibrary(expected, audit_.findings.size() > before &&
                               audit_.findings.back().kind == FindingKind::kMissing);
  }

  void LookForOldLibraries(const std::string& libraries) {
    for (const char* old : kOldLibraries) {
      std::error_code ignored;
      if (fs::is_directory(host_ / (libraries + old), ignored)) {
        audit_.old_libraries.push_back(libraries + old);
      }
    }
  }

  HostAudit Finish() {
    for (const auto& [library, counts] : libraries_) {
      if (counts.missing == counts.all) audit_.absent_libraries.push_back(library);
    }
    return std::move(audit_);
  }

 private:
  struct LibraryCounts {
    std::size_t all = 0;
    std::size_t missing = 0;
  };

  void Add(FindingKind kind, const std::string& path, const std::string& member,
           const std::string& words) {
    audit_.findings.push_back({kind, path, member, words});
  }

  // Nothing but a plain file is what an install leaves; its size, then, or none.
  std::optional<std::uintmax_t> SizeOf(const std::string& path, FindingKind when_missing) {
    std::error_code error;
    const fs::file_status status = fs::status(host_ / path, error);
    if (status.type() == fs::file_type::not_found) {
      Add(when_missing, path, "", when_missing == FindingKind::kMarker ? "is missing" : "");
      return std::nullopt;
    }
    std::uintmax_t size = 0;
    if (fs::is_regular_file(status)) size = fs::file_size(host_ / path, error);
    if (error) {
      Add(FindingKind::kUnreadable, path, "", error.message());
      return std::nullopt;
    }
    if (!fs::is_regular_file(status)) {
      Add(FindingKind::kDiffers, path, "", "is no plain file");
      return std::nullopt;
    }
    return size;
  }

  std::optional<std::string> ContentOf(const std::string& path) {
    try {
      return ReadWholeFile(host_ / path, path);
    } catch (const Refusal& refusal) {
      Add(FindingKind::kUnreadable, path, "", WithoutName(refusal, path));
      return std::nullopt;
    }
  }

  void LookAtFile(const Foretold& foretold) {
    ++audit_.files;
    const std::string path = LandingPath(foretold);
    const auto size = SizeOf(path, FindingKind::kMissing);
    if (!size) return;
    const std::uint64_t wanted = payload_.entries[foretold.source].size;
    if (*size != wanted) {
      Add(FindingKind::kDiffers, path, "", Comparison::SizeWords(*size, wanted));
      return;
    }
    const auto content = ContentOf(path);
    if (!content) return;
    const std::string expected = payload_.read(foretold.source);
    Comparison comparison(expected);
    comparison.Take(*content);
    if (!comparison.Words().empty()) Add(FindingKind::kDiffers, path, "", comparison.Words());
  }

  void LookAtMarker(const Foretold& foretold) {
    ++audit_.files;
    const std::string path = LandingPath(foretold);
    if (!SizeOf(path, FindingKind::kMarker)) return;
    const auto content = ContentOf(path);
    if (!content) return;
    audit_.marker = content->substr(0, kShownMarkerSize);
    const std::string wanted = payload_.read(foretold.source);
    if (*content == wanted) return;
    Add(FindingKind::kMarker, path, "", "says " + *audit_.marker + ", not " + wanted);
  }

  // The members of one archive follow each other.
  void OpenArchive(const std::string& path) {
    if (archive_path_ == path) return;
    archive_path_ = path;
    archive_.reset();
    if (!SizeOf(path, FindingKind::kMissing)) return;
    const std::string full_path = (host_ / path).string();
    try {
      archive_.emplace(full_path);
    } catch (const Refusal& refusal) {
      Add(FindingKind::kUnreadable, path, "", WithoutName(refusal, full_path));
    }
  }

  void LookAtMember(const Foretold& foretold) {
    ++audit_.members;
    const std::string path = LandingPath(foretold);
    OpenArchive(path);
    if (!archive_) return;
    const std::string expected = payload_.read(foretold.source);
    Comparison comparison(expected);
    try {
      const bool is_there = archive_->Read(
          foretold.file, [&comparison](std::string_view piece) { comparison.Take(piece); });
      if (!is_there) {
        Add(FindingKind::kMissing, path, foretold.file, "");
      } else if (!comparison.Words().empty()) {
        Add(FindingKind::kDiffers, path, foretold.file, comparison.Words());
      }
    } catch (const Refusal& refusal) {
      Add(FindingKind::kUnreadable, path, foretold.file,
          WithoutName(refusal, (host_ / path).string()));
    }
  }

  void LookForRetired(const Foretold& foretold) {
    ++audit_.removals;
    std::error_code error;
    const fs::file_type type = fs::symlink_status(host_ / LandingPath(foretold), error).type();
    if (type == fs::file_type::not_found) return;
    Add(FindingKind::kRetired, LandingPath(foretold), "", "");
  }

  // The words of a refusal behind the name that they are about, which the finding tells by itself.
  static std::string WithoutName(const Refusal& refusal, const std::string& name) {
    const std::string text = refusal.what();
    const std::string beginning = Printable(name) + ": ";
    return text.starts_with(beginning) ? text.substr(beginning.size()) : text;
  }

  // Only what the user's ticks apply to.
  void CountLibrary(const Expected& expected, bool is_missing) {
    const std::string& name = payload_.entries[expected.entry].name;
    if (!name.starts_with(kLibrariesFolder)) return;
    LibraryCounts& counts = libraries_[std::string(FirstComponent(AfterFirstComponent(name)))];
    ++counts.all;
    if (is_missing) ++counts.missing;
  }

  const PayloadView& payload_;
  const fs::path& host_;
  std::string archive_path_;
  std::optional<JarFile> archive_;
  std::map<std::string, LibraryCounts> libraries_;
  HostAudit audit_;
};

}  // namespace

HostAudit AuditHost(const PayloadView& payload, const InstallForecast& forecast,
                    const fs::path& host) {
  std::error_code error;
  if (!fs::is_directory(host, error)) throw Refusal(host.string(), "no such folder");
  Auditor auditor(payload, host);
  const std::vector<Expected> all = ExpectedIn(payload, forecast);
  ProgressBar progress("Checking", all.size());
  for (const Expected& expected : all) {
    auditor.Look(expected);
    progress.Advance(1);
  }
  auditor.LookForOldLibraries(forecast.LocationOf(kLibraryKey));
  return auditor.Finish();
}
