#include "packager/depfile.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <utility>

#include "packager/refusal.h"

namespace fs = std::filesystem;

namespace {

// Beside letters, digits and whatever isn't ASCII: what every tool takes for a part of a name. The
// blank is there because all of them know its escape.
constexpr std::string_view kUndisputed = "+-_.,/=@ ";

bool IsUndisputed(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         static_cast<unsigned char>(c) >= 0x80 || kUndisputed.find(c) != std::string_view::npos;
}

// Absolute without resolving links: the build tool must see the name that it gave itself.
std::string AbsoluteText(const fs::path& path) {
  return fs::absolute(path).lexically_normal().string();
}

std::string Named(const std::string& path) {
  if (path.find('\n') != std::string::npos) {
    throw Refusal(path, "a dependency file can't hold a path with a line end");
  }
  return EscapeForDepfile(path);
}

}  // namespace

std::string EscapeForDepfile(const std::string& path) {
  std::string escaped;
  std::size_t backslashes = 0;  // how many stand directly before the character
  for (const char c : path) {
    if (c == ' ' || c == '#') {
      escaped.append(backslashes + 1, '\\');
    } else if (c == '$') {
      escaped += '$';
    }
    escaped += c;
    backslashes = c == '\\' ? backslashes + 1 : 0;
  }
  return escaped;
}

Depfile MakeDepfile(const std::vector<fs::path>& targets, const PayloadTree& tree,
                    const fs::path& link_folder) {
  Depfile depfile;
  const auto add_prerequisite = [&depfile, &link_folder](const fs::path& path) {
    std::string named = path.string();
    if (!std::all_of(named.begin(), named.end(), IsUndisputed)) {
      named = AbsoluteText(link_folder / std::to_string(depfile.linked.size()));
      depfile.linked.push_back(path);
    }
    depfile.text += " \\\n  " + Named(named);
  };

  for (const fs::path& target : targets) {
    if (!depfile.text.empty()) depfile.text += " ";
    depfile.text += Named(AbsoluteText(target));
  }
  depfile.text += ":";
  const fs::path root = fs::absolute(tree.root).lexically_normal();
  // A trailing separator would make another name of the same folder.
  const fs::path base = root.has_filename() ? root : root.parent_path();
  for (const std::string& folder : tree.folders) {
    add_prerequisite(folder.empty() ? base : base / folder);
  }
  for (const PayloadFile& file : tree.files) add_prerequisite(base / file.name);
  depfile.text += "\n";
  return depfile;
}

LinkFolder::LinkFolder(fs::path folder) : folder_(std::move(folder)) {
  RemoveLinks();
}

LinkFolder::~LinkFolder() {
  if (!committed_) RemoveLinks();
}

void LinkFolder::Make(const std::vector<fs::path>& linked) {
  if (linked.empty()) return;
  std::error_code error;
  fs::create_directories(folder_, error);
  for (std::size_t i = 0; i < linked.size() && !error; ++i) {
    fs::create_symlink(linked[i], folder_ / std::to_string(i), error);
  }
  if (error) throw Refusal(folder_.string(), WithReason("can't be filled", error.value()));
}

void LinkFolder::RemoveLinks() noexcept {
  try {
    std::error_code ignored;
    std::vector<fs::path> links;
    for (const auto& entry : fs::directory_iterator(folder_, ignored)) {
      if (entry.is_symlink(ignored)) links.push_back(entry.path());
    }
    for (const fs::path& link : links) fs::remove(link, ignored);
    if (!links.empty()) fs::remove(folder_, ignored);
  } catch (const std::exception&) {
    // What can't be removed now can't be helped; a link left over is named by no dependency file.
    return;
  }
}
