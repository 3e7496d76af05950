#include "packager/depfile.h"

#include "packager/refusal.h"

namespace fs = std::filesystem;

namespace {

// Absolute without resolving links: the build tool must see the name that it gave itself.
std::string Prerequisite(const fs::path& path) {
  const std::string text = fs::absolute(path).lexically_normal().string();
  if (text.find('\n') != std::string::npos) {
    throw Refusal(text, "a dependency file can't hold a path with a line end");
  }
  return EscapeForDepfile(text);
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

std::string DepfileText(const std::vector<fs::path>& targets, const PayloadTree& tree) {
  std::string text;
  for (const fs::path& target : targets) {
    if (!text.empty()) text += " ";
    text += Prerequisite(target);
  }
  text += ":";
  // The root has no name of its own below itself, and a path that ends in a separator would be
  // another name for it.
  const fs::path root = fs::absolute(tree.root).lexically_normal();
  const fs::path base = root.has_filename() ? root : root.parent_path();
  for (const std::string& folder : tree.folders) {
    text += " \\\n  " + Prerequisite(folder.empty() ? base : base / folder);
  }
  for (const PayloadFile& file : tree.files) text += " \\\n  " + Prerequisite(base / file.name);
  return text + "\n";
}
