# Generates the files of a stand-in. Input: "bytes TAB file", one of each size wanted, in any order.
# Writes each file with phrases drawn at random from a fixed set: text that compresses to about a sixth,
# as the files it stands for do. The same input gives the same bytes, whatever awk runs this.
function random(below) {
  seed = seed * 16807 % 2147483647
  return int(seed / 2147483647 * below)
}
BEGIN {
  FS = "\t"
  seed = 20191
  letters = "etaoinshrdlucmfwypvbgkqjxzETAOINSHRDLU0123456789_()[]{}<>=+-*/;,. .  "
  for (i = 0; i < 16384; ++i) {
    text = ""
    for (length_left = 10 + random(21); length_left > 0; --length_left)
      text = text substr(letters, 1 + random(length(letters)), 1)
    phrase[i] = text
    size[i] = length(text)
  }
}
{
  left = $1
  while (left > 32) {
    i = random(16384)
    printf "%s\n", phrase[i] > $2
    left -= size[i] + 1
  }
  printf "%s", substr("................................", 1, left) > $2
  close($2)
}
