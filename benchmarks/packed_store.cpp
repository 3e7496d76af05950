#include "benchmarks/packed_store.h"

#include <fstream>
#include <iterator>
#include <stdexcept>
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

void ReadTable(const std::filesystem::path& path) {
  std::ifstream table(path);
  std::string line;
  for (int i = 0; i < 4; ++i) std::getline(table, line);  // the head
  std::uint32_t size = 0;
  while (table >> size && table.get() == '\t' && std::getline(table, line)) {
    sizes.push_back(size);
    texts.push_back(line);
  }
  if (texts.empty()) throw std::runtime_error(path.string() + ": no table");
}

}  // namespace

const EmbeddedFileStore& Store = packed;

void UsePackedStore(const std::filesystem::path& folder) {
  ReadTable(folder / "payload.tbl");
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
}
