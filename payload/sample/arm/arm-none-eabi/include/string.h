/* Memory and texts. */
#ifndef _STRING_H
#define _STRING_H

#include <stddef.h>

void* memcpy(void* to, const void* from, size_t count);
void* memmove(void* to, const void* from, size_t count);
void* memset(void* to, int value, size_t count);
int memcmp(const void* left, const void* right, size_t count);
size_t strlen(const char* text);
int strcmp(const char* left, const char* right);

#endif
