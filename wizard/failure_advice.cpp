#include "wizard/failure_advice.h"

#include <cstring>

#include "engine/file_disposition.h"
#include "engine/install_error.h"
#include "platform/administrator.h"
#include "platform/text.h"

namespace {

char advice[kAdviceSize];

void Append(const char* paragraph) {
  const std::size_t length = std::strlen(advice);
  FormatBounded(advice + length, sizeof advice - length, "%s", paragraph);
}

}  // namespace

const char* FailureAdvice() {
  if (is_user_admin() == 0) {
    FormatBounded(advice, sizeof advice,
                  "%s\n\nYou may need to run this installer with administrator access to install "
                  "all files.  Please right click on this program and select \"Run as "
                  "Administrator\"\n",
                  InstallErrorText());
  } else {
    FormatBounded(advice, sizeof advice,
                  "%s\n\nThe files or directories may have write permissions blocked or may be "
                  "stored on a read-only disc or network drive.  Please try installing on a fresh "
                  "copy of Arduino in your directory.\n",
                  InstallErrorText());
  }
  Append(
      "\nPlease make sure you do not have a copy of Arduino running, as this can block writing to "
      "certain files.\n");
  if (AntivirusHint) {
    Append(
        "\nAnti-virus software can sometimes falsely interfere with writing this type of file.  If "
        "you are running an anti-virus program, you may need to temporarily disable it.\n");
  }
  return advice;
}
