// Tells whether two names are those of the same file.
#include <SdFat.h>

void setup() {
  Serial1.begin(115200);
  Serial1.println(sdFatSameName("notes.txt", "NOTES.TXT") ? "the same" : "two files");
}

void loop() {}
