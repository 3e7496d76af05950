// The last page. Only Done works on it.
#pragma once

// Adds the page to the current group.
void BuildFinishedPage();
