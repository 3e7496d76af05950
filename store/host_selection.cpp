#include "store/host_selection.h"

#include <cstring>

#include "platform/text.h"

char HostFolder[kFolderSize];
char BrowsedFolder[kFolderSize];
char HostVersion[kHostVersionSize];
std::size_t HostVersionLength;
int HostVersionNumber;

void SelectRelease(const char* release) {
  FormatBounded(HostVersion, sizeof HostVersion, "%s", release);
  HostVersionLength = std::strlen(HostVersion);
}

void ResetHostSelection() {
  HostFolder[0] = '\0';
  BrowsedFolder[0] = '\0';
  HostVersionNumber = 0;
  SelectRelease("");
}
