# Spreads source files over folders. Variables: `count`, how many files to place, and `folders`, a file
# of "weight TAB folder" lines. Input: "bytes TAB file", sorted by file. Takes `count` of the lines at
# even distances and gives each folder a run of neighbours in proportion to its weight. Prints
# "name TAB file"; a name is the folder, the last folder of the file, and the file's own name.
BEGIN {
  FS = OFS = "\t"
  while ((getline line < folders) > 0) {
    split(line, part, "\t")
    weight[++n] = part[1]; folder[n] = part[2]; total += part[1]
  }
}
{ file[++files] = $2 }
END {
  if (files < count) {
    print "too few source files: " files + 0 " instead of " count > "/dev/stderr"
    exit 1
  }
  at = 1
  end = weight[1]
  for (i = 0; i < count; ++i) {
    while ((i + 0.5) / count * total > end) end += weight[++at]
    path = file[int(i * files / count) + 1]
    m = split(path, part, "/")
    leaf = part[m]
    below = tolower(part[m - 1])
    # Names that Windows keeps for its devices get a letter in front.
    if (tolower(leaf) ~ /^(con|prn|aux|nul|com[1-9]|lpt[1-9])(\.|$)/) leaf = "x" leaf
    if (below ~ /^(con|prn|aux|nul|com[1-9]|lpt[1-9])(\.|$)/) below = "x" below
    gsub(/[^a-z0-9_+-]/, "_", below)
    name = folder[at] "/" below "/" leaf
    for (k = 2; tolower(name) in used; ++k) name = folder[at] "/" below k "/" leaf
    used[tolower(name)]
    print name, path
  }
}
