# Generates the files of a stand-in. Input: "bytes TAB file", one of each size wanted, in any order.
# Writes each file with phrases drawn at random from a fixed set: text that compresses to about a fifth,
# as the files it stands for do. The same input gives the same bytes, whatever awk runs this.
function random(below) {
  seed = seed * 16807 % 2147483647
  return int(seed / 2147483647 * below)
}
BEGIN {
  FS = "\t"
  seed = 20191
  letters = "etaoinshrdlucmfwypvbgkqjxzETAOINSHRDLU0123456789_()[]{}<>=+-*/;,. .  "
  for (i = 0; i < 65536; ++i) {
    text = ""
    for (length_left = 8 + random(13); length_left > 0; --length_left)
      text = text substr(letters, 1 + random(length(letters)), 1)
    phrase[i] = text
    size[i] = length(text)
  }
}
{
  left = $1
  while (left > 24) {
    i = random(65536)
    printf "%s\n", phrase[i] > $2
    left -= size[i] + 1
  }
  printf "%s", substr("........................", 1, left) > $2
  close($2)
}
