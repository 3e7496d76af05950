#include <csignal>

#include "packager/interruption.h"

namespace {

volatile std::sig_atomic_t noted = 0;

void Note(int signal) {
  noted = signal;
  std::signal(signal, SIG_DFL);
}

}  // namespace

void NoteInterruptions() {
  for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
    if (std::signal(signal, Note) == SIG_IGN) std::signal(signal, SIG_IGN);
  }
}

void StopIfInterrupted() {
  if (noted != 0) throw Interruption(noted);
}
