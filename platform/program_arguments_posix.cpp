#include "platform/program_arguments.h"

void ProgramArguments(int*, char***) {}
