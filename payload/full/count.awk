# Compares a tree with the figures wanted. Reads three files: the figures ("number TAB label"), the names
# that have to be there, and the packer's list of the tree ("index TAB bytes TAB name"); groups.awk has to
# be loaded too. Variables: the tree's share of the full one is n/d. Prints the table; ends with status 1
# when a figure is off. A full tree has to meet every figure and name. In a scaled one groups divide only
# roughly, so the whole alone is held to its share: bytes exactly, entries and aliases within two percent.
function row(label, have, want, exact,   note) {
  if (exact ? have != want : have < 0.98 * want || have > 1.02 * want) { note = "  WRONG"; wrong = 1 }
  printf "  %-20s %12d %12d%s\n", label, have, want, note
}
FNR == 1 { ++file; FS = "\t"; $0 = $0 }
file == 1 { label[++labels] = $2; want[$2] = $1 }
file == 2 { named[++names] = $0 }
file == 3 {
  ++have["entries"]
  have["bytes"] += $2
  here[$3]
  left = $3
  sub(/ --> .*/, "", left)
  here[left]  # an alias is there under the path that it installs
  if (index($3, " --> ")) ++have["aliases"]
  g = group($3)
  ++have[g]
  if (g == "") stray = $3
  if (g == "release libraries") ++release[substr($3, 1, index($3, "/") - 1)]
}
END {
  full = n == 1 && d == 1
  printf "  %-20s %12s %12s\n", "group", "there", "wanted"
  for (i = 1; i <= labels; ++i) {
    l = label[i]
    share = int(want[l] * n / d + 0.5)
    if (full || l == "bytes") row(l, have[l], share, 1)
    else if (l == "entries" || l == "aliases") row(l, have[l], share, 0)
    else row(l, have[l], have[l], 1)
  }
  if (full) {
    if (stray != "") { print "  in no group: " stray; wrong = 1 }
    for (r in release) if (release[r] != want["release libraries"] / 6) {
      print "  release " r " has " release[r] " library files"
      wrong = 1
    }
    for (i = 1; i <= names; ++i) if (!(named[i] in here)) { print "  missing: " named[i]; wrong = 1 }
  }
  exit wrong
}
