#include "platform/process.h"

void PrepareProcess() {}

void ProgramArguments(int*, char***) {}
