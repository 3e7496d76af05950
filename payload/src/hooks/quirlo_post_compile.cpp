// quirlo_post_compile [-v] -file=NAME -path=FOLDER -board=BOARD [-tools=FOLDER]
//                     [-reboot -port=PORT -emulator=COMMAND]
// Runs after a sketch was built: reads the image, FOLDER/NAME.hex, as a loader would, and tells
// what it holds. With -reboot, which the IDE adds to send the program, it tells how to run it: the
// boards live in an emulator and hang on no port. Exit status 0, or 1 with the reason when the
// image is no sound one.
#include <cstdio>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

namespace {

int Fail(const std::string& reason) {
  std::fprintf(stderr, "quirlo_post_compile: %s\n", reason.c_str());
  return 1;
}

// The bytes of a line of the Intel hex format: a colon, then two digits for each byte. The first
// says how many of data there are, between the four bytes of count, address and type and the one
// that makes the sum of all a multiple of 256.
std::optional<std::vector<unsigned>> BytesOf(std::string line) {
  if (!line.empty() && line.back() == '\r') line.pop_back();
  if (line.size() < 11 || line.size() % 2 == 0 || line[0] != ':') return std::nullopt;
  if (line.find_first_not_of("0123456789ABCDEFabcdef", 1) != std::string::npos) return std::nullopt;
  std::vector<unsigned> bytes;
  unsigned sum = 0;
  for (std::size_t at = 1; at < line.size(); at += 2) {
    bytes.push_back(static_cast<unsigned>(std::stoul(line.substr(at, 2), nullptr, 16)));
    sum += bytes.back();
  }
  if (bytes.size() != bytes[0] + 5 || sum % 256 != 0) return std::nullopt;
  return bytes;
}

}  // namespace

int main(int argc, char** argv) {
  std::string file, path, board, emulator;
  bool send = false;
  for (int i = 1; i < argc; ++i) {
    const std::string argument = argv[i];
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const std::string value = equals == std::string::npos ? "" : argument.substr(equals + 1);
    if (name == "-file") file = value;
    if (name == "-path") path = value;
    if (name == "-board") board = value;
    if (name == "-emulator") emulator = value;
    if (name == "-reboot") send = true;
  }
  if (file.empty() || path.empty()) return Fail("-file= and -path= are needed");

  const std::string image = path + "/" + file + ".hex";
  std::ifstream lines(image);
  if (!lines) return Fail("no image " + image);
  constexpr unsigned kData = 0, kEnd = 1;
  unsigned long data = 0;
  bool ended = false;
  int number = 0;
  for (std::string line; !ended && std::getline(lines, line);) {
    ++number;
    const auto bytes = BytesOf(line);
    if (!bytes) return Fail(image + ": line " + std::to_string(number) + " is damaged");
    if ((*bytes)[3] == kData) data += (*bytes)[0];
    ended = (*bytes)[3] == kEnd;
  }
  if (!ended) return Fail(image + " ends too early");
  std::printf("%s: an image of %lu bytes, %s.hex\n", board.c_str(), data, file.c_str());
  if (send) {
    std::printf("This board lives in an emulator. To run the program there:\n");
    std::printf("%s \"%s/%s.elf\" -display none -monitor none -serial stdio\n", emulator.c_str(),
                path.c_str(), file.c_str());
  }
  return 0;
}
