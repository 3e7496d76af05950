#include "packager/host_match.h"

#include "packager/entry_names.h"
#include "packager/host_log.h"
#include "packager/refusal.h"
#include "recognition/check_criteria.h"
#include "store/payload_format.h"

namespace fs = std::filesystem;

namespace {

// The first line that doesn't hold in this folder, as the check log has it; empty when all do.
std::string WhatDoesNotHold(const std::string& name, const std::string& criteria,
                            const fs::path& host) {
  ClearHostLog();
  const std::string folder = host.string() + "/";
  if (CheckCriteriaText(folder.c_str(), name.c_str(), criteria.data(), criteria.size()) != 0) {
    return {};
  }
  return LastHostLogLine();
}

// The words about a release that matches no host; empty when it matches one.
std::string WordsAboutRelease(const std::string& name, const std::string& criteria,
                              const std::vector<fs::path>& hosts) {
  std::string words;
  for (const fs::path& host : hosts) {
    const std::string reason = WhatDoesNotHold(name, criteria, host);
    if (reason.empty()) return {};
    words += (words.empty() ? "" : "; ") + host.string() + ": " + reason;
  }
  return words;
}

void CheckIsFolder(const fs::path& host) {
  std::error_code error;
  if (!fs::is_directory(host, error)) throw Refusal(host.string(), "no such folder");
}

}  // namespace

std::vector<Warning> CompareWithHosts(const std::vector<PayloadFile>& files,
                                      const std::vector<fs::path>& hosts,
                                      const ContentReader& read) {
  std::vector<Warning> warnings;
  for (const fs::path& host : hosts) CheckIsFolder(host);
  if (hosts.empty()) return warnings;
  for (const PayloadFile& file : files) {
    if (!file.name.ends_with(kCriteriaFileEnding)) continue;
    const std::string words = WordsAboutRelease(file.name, read(file), hosts);
    if (words.empty()) continue;
    warnings.push_back({file.name, "matches no folder given with --host (" + words + ")"});
  }
  return warnings;
}

std::string FindRelease(const PayloadView& payload, const fs::path& host) {
  CheckIsFolder(host);
  std::string words;
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    const std::string& name = payload.entries[i].name;
    if (!name.ends_with(kCriteriaFileEnding)) continue;
    std::string release(FirstComponent(name));
    const std::string reason = WhatDoesNotHold(name, payload.read(i), host);
    if (reason.empty()) return release;
    words.append(words.empty() ? "" : "; ").append(release).append(": ").append(reason);
  }
  throw Refusal(host.string(), "is none of the payload's releases (" + words + ")");
}
