#include "platform/library_search.h"

void RestrictLibrarySearch() {}
