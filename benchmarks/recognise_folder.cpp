// Recognition alone: tells which release of the payload a folder holds.
//   recognise_folder PACKED FOLDER/
#include <cstdio>
#include <exception>

#include "benchmarks/packed_store.h"
#include "recognition/identify_arduino.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  try {
    UsePackedStore(argv[1]);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "recognise_folder: %s\n", error.what());
    return 1;
  }
  if (!LoadEmbeddedFiles() || IdentifyArduino(argv[2]) == 0) return 1;
  std::printf("%s\n", HostVersion);
  return 0;
}
