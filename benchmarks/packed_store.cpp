#include "benchmarks/packed_store.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "store/embedded_file_store.h"

namespace {

EmbeddedFileStore packed;
std::string frame;
std::vector<std::string> texts;
std::vector<const char*> names;
std::vector<std::uint32_t> sizes;
std::vector<const unsigned char*> data;

void ReadTable(std::istream& table) {
  std::string line;
  for (int i = 0; i < 4; ++i) std::getline(table, line);  // the head
  std::uint32_t size = 0;
  while (table >> size && table.get() == '\t' && std::getline(table, line)) {
    sizes.push_back(size);
    texts.push_back(line);
  }
}

}  // namespace

const EmbeddedFileStore& Store = packed;

bool LoadPackedStore(const std::filesystem::path& folder) {
  std::ifstream table(folder / "payload.tbl");
  ReadTable(table);
  std::ifstream file(folder / "payload.zst", std::ios::binary);
  frame.assign(std::istreambuf_iterator<char>(file), {});
  for (const std::string& text : texts) names.push_back(text.c_str());
  data.resize(texts.size());
  packed = {reinterpret_cast<const unsigned char*>(frame.data()),
            frame.size(),
            static_cast<std::uint32_t>(texts.size()),
            names.data(),
            sizes.data(),
            data.data()};
  if (!texts.empty() && LoadEmbeddedFiles()) return true;
  std::fprintf(stderr, "%s: no packed payload\n", folder.c_str());
  return false;
}
