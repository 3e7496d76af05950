#include "packager/payload_tree.h"

#include <algorithm>
#include <system_error>

#include "packager/refusal.h"

namespace fs = std::filesystem;

namespace {

constexpr fs::perms kExecuteBits =
    fs::perms::owner_exec | fs::perms::group_exec | fs::perms::others_exec;

[[noreturn]] void RefuseUnreadable(const std::string& name, const std::error_code& error) {
  throw Refusal(name, WithReason("can't be read", error.value()));
}

// The names in a folder, sorted, so that of several faults always the same one is told.
std::vector<std::string> NamesIn(const fs::path& folder) {
  std::vector<std::string> names;
  std::error_code error;
  fs::directory_iterator position(folder, error);
  for (; !error && position != fs::directory_iterator(); position.increment(error)) {
    names.push_back(position->path().filename().string());
  }
  if (error) RefuseUnreadable(folder.string(), error);
  std::sort(names.begin(), names.end());
  return names;
}

void AddFile(const fs::path& path, const std::string& name, PayloadTree* tree) {
  std::error_code error;
  const FileStamp stamp = StampOf(path, &error);
  const std::uintmax_t size = error ? 0 : fs::file_size(path, error);
  if (error) RefuseUnreadable(name, error);
  tree->files.push_back({name, size});
  tree->stamps.emplace(name, stamp);
}

void Walk(const std::string& folder, PayloadTree* tree) {
  tree->folders.push_back(folder);
  for (const std::string& child : NamesIn(tree->root / folder)) {
    const fs::path relative = fs::path(folder) / child;
    const std::string name = relative.generic_string();
    const fs::path path = tree->root / relative;
    std::error_code error;
    const fs::file_status status = fs::symlink_status(path, error);
    if (status.type() == fs::file_type::symlink) {
      throw Refusal(name, "a payload tree must not hold symbolic links");
    }
    if (status.type() == fs::file_type::directory) {
      Walk(name, tree);
    } else if (status.type() == fs::file_type::regular) {
      AddFile(path, name, tree);
      if ((status.permissions() & kExecuteBits) != fs::perms::none) {
        tree->executables.push_back(name);
      }
    } else if (error) {
      RefuseUnreadable(name, error);
    } else {
      throw Refusal(name, "a payload tree must not hold special files");
    }
  }
}

}  // namespace

PayloadTree ReadPayloadTree(const fs::path& root) {
  std::error_code error;
  if (!fs::is_directory(root, error)) throw Refusal(root.string(), "no such folder");
  PayloadTree tree{root, {}, {}};
  Walk("", &tree);
  std::sort(tree.files.begin(), tree.files.end(),
            [](const PayloadFile& a, const PayloadFile& b) { return a.name < b.name; });
  std::sort(tree.folders.begin(), tree.folders.end());
  return tree;
}

void CheckUnchanged(const PayloadTree& tree) {
  const PayloadTree now = ReadPayloadTree(tree.root);
  const auto refuse = [](const std::string& name) {
    throw Refusal(name, "changed while the tree was being packed");
  };
  for (const auto& [name, stamp] : tree.stamps) {
    const auto found = now.stamps.find(name);
    if (found == now.stamps.end() || found->second != stamp) refuse(name);
  }
  for (const auto& [name, stamp] : now.stamps) {
    if (!tree.stamps.contains(name)) refuse(name);
  }
  if (now.folders != tree.folders) refuse(tree.root.string());
}
