/* A program outside the tree, in C. */
#include <stdio.h>
#include <string.h>
#include <zvpvc.h>

int main(void) {
  const zvpVersionRecord *record = zvpvcGetLibVersion();
  puts(record->Name);
  return record->major == 6 && strcmp(record->Name, "libzvpvcmx.so.6.1") == 0 ? 0 : 1;
}
