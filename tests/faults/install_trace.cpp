#include "tests/faults/install_trace.h"

#include <numeric>
#include <regex>
#include <set>
#include <tuple>
#include <utility>

namespace {

const std::set<std::string>& Tools() {
  static const std::set<std::string> tools = {
      "quirlo_reboot.exe",  "quirlo_size.exe",    "quirlo_restart.exe",  "quirlo_post_compile.exe",
      "quirlo_cleanup.exe", "quirlo_gateway.exe", "quirlo_ports.exe",    "quirlo_serialmon.exe",
      "quirlo_secure.exe",  "mktinyfat.exe",      "stdout_redirect.exe", "precompile_helper.exe",
      "pre_uninstall.bat",  "quirlo.exe"};
  return tools;
}

bool IsArchive(const std::string& path, const std::string& host) {
  for (const char* jar : {"/lib/pde.jar", "/lib/arduino-core.jar"}) {
    if (path == host + jar || path == host + jar + ".XXXXXX") return true;
  }
  return false;
}

bool IsClose(const std::string& name) {
  return name == "close" || name == "fclose" || name == "closedir";
}

}  // namespace

InstallTrace::InstallTrace(std::vector<Operation> operations, std::string host,
                           std::string host_text, bool with_recognition)
    : operations_(std::move(operations)),
      roles_(operations_.size(), Role::kHarmless),
      host_(std::move(host)),
      host_text_(std::move(host_text)) {
  GiveRoles(with_recognition);
}

std::string InstallTrace::Rest(long n) const {
  const std::string& path = At(n).path;
  return path.size() > host_.size() ? path.substr(host_.size() + 1) : "";
}

// The look whether a plain file stands there. Where it fails, the opening tells.
bool InstallTrace::IsLookBeforeOpening(std::size_t i) const {
  if (operations_[i].name != "stat" || i + 1 == operations_.size()) return false;
  const auto& [name, path] = operations_[i + 1];
  return path == operations_[i].path && (name == "fopen" || name == "create" || name == "stat");
}

// The release that matches is the last whose version file is looked at; the guard's look at the
// marker ends the recognition.
std::size_t InstallTrace::GiveRecognitionRoles() {
  const std::string version = host_ + "/lib/version.txt";
  const std::string marker = host_ + "/lib/quirloduino.txt";
  std::size_t matching = 0;
  std::size_t end = 0;
  for (std::size_t i = 0; i < operations_.size(); ++i) {
    const auto& [name, path] = operations_[i];
    if (name == "fopen" && path == version) matching = i;
    if (name == "fopen" && path == marker) end = i;
  }
  for (std::size_t i = 0; i < end; ++i) {
    const auto& [name, path] = operations_[i];
    roles_[i] = i < matching ? Role::kOtherRelease : Role::kRecognition;
    // A file counts as present once it is open, and an archive's are only read.
    if (IsClose(name) || name == "fstat" || IsLookBeforeOpening(i)) roles_[i] = Role::kHarmless;
  }
  roles_[0] = Role::kOpenHost;
  // Trouble with the marker lets the install go ahead.
  while (end < operations_.size() && operations_[end].path == marker) ++end;
  return end;
}

// Opening an archive ends in one read, that of its directory, which lies at the end of the file and
// is small in a test's host. What follows is the commit. Where the archive's first objects stay as
// they are, it tries to share their blocks, for which it makes and removes a file; that this
// doesn't work is no failure. The new archive's rights are a courtesy too.
std::size_t InstallTrace::GiveArchiveRoles(std::size_t i) {
  bool committing = false;
  for (; i < operations_.size() && IsArchive(operations_[i].path, host_); ++i) {
    const auto& [name, path] = operations_[i];
    const bool temporary = path.ends_with(".XXXXXX");
    roles_[i] = committing ? Role::kCommitArchive : Role::kOpenArchive;
    static const std::set<std::string> harmless = {"fstat", "mkstemp", "ioctl", "close", "chmod"};
    if (harmless.contains(name)) roles_[i] = Role::kHarmless;
    if (IsLookBeforeOpening(i)) roles_[i] = Role::kHarmless;
    if (committing && name == "stat") roles_[i] = Role::kHarmless;
    if (name == "fclose" && !temporary) roles_[i] = Role::kHarmless;
    if (name == "remove") roles_[i] = Role::kLeftover;
    if (name == "rename") {
      roles_[i] = Role::kReplaceArchive;
      // What follows is a look at who may use the new archive.
      return i + 1 < operations_.size() && operations_[i + 1].name == "stat" ? i + 2 : i + 1;
    }
    if (name == "fread") committing = true;
  }
  return i;
}

void InstallTrace::GiveFolderRole(std::size_t i) {
  const auto& [name, path] = operations_[i];
  if (name == "mkdir") {
    roles_[i] = Role::kMakeLevel;
    return;
  }
  const bool present = i + 1 < operations_.size() && operations_[i + 1].name == "close" &&
                       operations_[i + 1].path == path;
  if (wanted_.empty()) {
    roles_[i] = Role::kFirstLook;
    if (present) return;
    wanted_ = path;
    base_seen_ = false;
    level_ = host_.size() + 1;
  } else if (!base_seen_) {
    roles_[i] = Role::kBaseLook;
    base_seen_ = true;
  } else if (level_ == wanted_.size()) {
    roles_[i] = Role::kLastLook;
    wanted_.clear();
  } else {
    roles_[i] = present ? Role::kPresentLevel : Role::kAbsentLevel;
    if (operations_[i - 1].name == "mkdir") roles_[i] = Role::kMadeLevel;
    if (present) level_ = wanted_.find('/', level_) + 1;
  }
}

void InstallTrace::GiveFileRole(std::size_t i) {
  static const std::map<std::string, Role> roles = {{"create", Role::kCreate},
                                                    {"fwrite", Role::kWrite},
                                                    {"fflush", Role::kFlush},
                                                    {"fopen", Role::kFindRetired},
                                                    {"unlink", Role::kRemoveRetired}};
  const auto& [name, path] = operations_[i];
  const auto role = roles.find(name);
  if (role != roles.end()) roles_[i] = role->second;
  if (name == "fclose" && roles_[i - 1] == Role::kFlush) roles_[i] = Role::kClose;
}

void InstallTrace::GiveRoles(bool with_recognition) {
  const std::string marker = host_ + "/lib/quirloduino.txt";
  std::size_t i = with_recognition ? GiveRecognitionRoles() : 0;
  while (i < operations_.size()) {
    const auto& [name, path] = operations_[i];
    if (IsArchive(path, host_)) {
      i = GiveArchiveRoles(i);
      continue;
    }
    if (name == "folder" || name == "mkdir") {
      GiveFolderRole(i);
    } else {
      GiveFileRole(i);
    }
    ++i;
    if (roles_[i - 1] == Role::kClose && path == marker) break;
  }
  for (; i < operations_.size(); ++i) roles_[i] = Role::kLastSteps;
}

std::vector<long> InstallTrace::All() const {
  std::vector<long> all(size());
  std::iota(all.begin(), all.end(), 1);
  return all;
}

std::vector<long> InstallTrace::Representatives() const {
  std::set<std::tuple<Role, std::string, bool>> kinds;
  std::vector<long> representatives;
  for (long n = 1; n <= static_cast<long>(size()); ++n) {
    const bool temporary = At(n).path.ends_with(".XXXXXX");
    if (kinds.insert({RoleAt(n), At(n).name, temporary}).second) representatives.push_back(n);
  }
  return representatives;
}

Outcome InstallTrace::FailureAt(long n) const {
  using End = Outcome::End;
  const std::string rest = Rest(n);
  const std::string path = host_text_ + rest;
  const std::string archive = path.substr(0, path.rfind(".jar") + 4);
  const std::string named = " \"" + rest + "\".";
  switch (RoleAt(n)) {
    case Role::kOpenHost:
      return {End::kRefused, "Unable to access directory: " + host_text_ + "\n"};
    case Role::kRecognition:
      return {End::kRefused, "Directory \"" + host_text_ + "\" is not a supported Arduino\n"};
    case Role::kBaseLook:
      return {End::kFailed, "Directory \"" + host_text_ + "\" does not exist!"};
    case Role::kPresentLevel:  // it looks absent, and can't be made
    case Role::kMakeLevel:
      return {End::kFailed, "Unable to create directory \"" + path + "\"."};
    case Role::kMadeLevel:
      return {End::kFailed, ""};
    case Role::kLastLook:
      return {End::kFailed, "Could not create directory \"" + path + "\"!"};
    case Role::kCreate:
      return {End::kFailed, "Unable to write file" + named};
    case Role::kWrite:
      return {End::kFailed, "Error while writing to file" + named};
    case Role::kFlush:
      return {End::kFailed, "Error after writing to file" + named};
    case Role::kClose:
      return {End::kFailed, "Error closing file" + named};
    case Role::kRemoveRetired:
      return {End::kFailed, "Unable to delete" + named};
    case Role::kOpenArchive:
      return {End::kFailed, "Unable to open file \"" + archive + "\"."};
    case Role::kCommitArchive:
    case Role::kReplaceArchive:
      return {End::kFailed, "Unable to write changes to \"" + archive + "\""};
    case Role::kOtherRelease:
    case Role::kHarmless:
    case Role::kFirstLook:  // the levels are looked at one by one, and are all there
    case Role::kAbsentLevel:
    case Role::kFindRetired:  // what can't be opened counts as absent
    case Role::kLeftover:
    case Role::kLastSteps:
      break;
  }
  return {End::kDone, ""};
}

// The entry under way is the one whose own operation comes next: an archive is committed by the
// entry behind its last object.
bool InstallTrace::HintAt(long n) const {
  for (long i = n; i <= static_cast<long>(size()); ++i) {
    if (RoleAt(i) == Role::kOpenArchive) return true;
    if (RoleAt(i) == Role::kFindRetired || RoleAt(i) == Role::kRemoveRetired) return false;
    if (IsArchive(At(i).path, host_) || !At(i).path.starts_with(host_)) continue;
    const bool is_file = RoleAt(i) == Role::kCreate || RoleAt(i) == Role::kWrite ||
                         RoleAt(i) == Role::kFlush || RoleAt(i) == Role::kClose;
    if (!is_file) continue;
    const std::string folder = "hardware/tools/";
    return Rest(i).starts_with(folder) && Tools().contains(Rest(i).substr(folder.size()));
  }
  return false;
}

std::string InstallTrace::CompareEnd(long n, const Files& before, const Files& complete,
                                     const Files& after) const {
  Files expected = before;
  std::string partial;  // the file that was being written
  for (long i = 1; i < n; ++i) {
    const std::string rest = Rest(i);
    if (RoleAt(i) == Role::kCreate) partial = rest;
    if (RoleAt(i) == Role::kClose) {
      expected[rest] = complete.at(rest);
      partial.clear();
    }
    if (RoleAt(i) == Role::kRemoveRetired) expected.erase(rest);
    if (RoleAt(i) != Role::kReplaceArchive) continue;
    const std::string jar = rest.substr(0, rest.rfind(".jar") + 4) + "!/";
    for (const auto& [path, content] : complete) {
      if (path.starts_with(jar)) expected[path] = content;
    }
  }
  if (!partial.empty()) {
    const auto found = after.find(partial);
    if (found == after.end()) return partial + " is missing, though it was opened for writing";
    if (!complete.at(partial).starts_with(found->second)) {
      return partial + " holds what is no beginning of its content";
    }
    expected[partial] = found->second;
  }
  return Difference(expected, after);
}

std::vector<std::string> TakeTemporaries(Files* files) {
  static const std::regex temporary("lib/(pde|arduino-core)\\.jar\\.[A-Za-z0-9]{6}");
  std::vector<std::string> names;
  std::erase_if(*files, [&](const auto& file) {
    const bool matches = std::regex_match(file.first, temporary);
    if (matches) names.push_back(file.first);
    return matches;
  });
  return names;
}

std::string Difference(const Files& expected, const Files& found) {
  if (expected == found) return "";
  for (const auto& [path, content] : expected) {
    const auto other = found.find(path);
    if (other == found.end()) return path + " is missing";
    if (other->second != content) return path + " has another content";
  }
  for (const auto& [path, content] : found) {
    if (!expected.contains(path)) return path + " should not be there";
  }
  return "";
}
