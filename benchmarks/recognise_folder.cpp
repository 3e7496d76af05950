// Recognition alone: tells which release of the payload a folder holds.
//   recognise_folder PACKED FOLDER/
#include <cstdio>

#include "benchmarks/packed_store.h"
#include "recognition/identify_arduino.h"
#include "store/embedded_file_store.h"
#include "store/host_selection.h"

int main(int argc, char** argv) {
  if (argc != 3) return 2;
  if (!LoadPackedStore(argv[1]) || IdentifyArduino(argv[2]) == 0) return 1;
  std::printf("%s\n", HostVersion);
  return 0;
}
