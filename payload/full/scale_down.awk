# Picks n/d of a tree's entries. Input: the packer's list, the largest entries first ("index TAB bytes TAB
# name"). Variables: n, d, and `bytes`, the content wanted. Prints "link TAB name" for a file to keep and
# "cut TAB name TAB bytes" for one to keep that much of; vscode_plugins.exe, which nothing installs,
# takes what is missing to `bytes`. groups.awk has to be loaded too.
#
# Of each group the entries stand in order of size, and one of each d/n is kept, from the middle: so
# bytes shrink about as entries do. The release trees keep the same files. What an installer can't do
# without stays, and programs and archives outside the toolchain are cut to their share.
BEGIN { FS = OFS = "\t"; filler = "vscode_plugins.exe"; least = 65536 }

# True for `part` of each `whole` calls with the same key.
function keep(key, part, whole,   before) {
  if (!(key in state)) state[key] = whole / 2
  before = state[key]
  state[key] += part
  if (state[key] < whole) return 0
  state[key] -= whole
  return 1
}
function needed(name) {
  return name ~ /^[^\/]*$|^armlib\/|\/WINDOWS\/(directory_criteria|locations)\.txt$/ ||
         name ~ /^[0-9][^\/]*\/(boards|platform)\.txt$/ || name == "cores/keywords.txt"
}
{ bytes_of[NR] = $2; name_of[NR] = $3; group_of[NR] = group($3) }
END {
  for (i = 1; i <= NR; ++i) {
    at = index(name_of[i], " --> ")
    if (at) {
      if (!keep("alias", n, d)) continue
      alias[substr(name_of[i], 1, at - 1)]
      target[substr(name_of[i], at + 5)]
    } else if (group_of[i] == "arm") {
      ++arm
    } else if (group_of[i] == "libraries") {
      ++libraries
    } else if (needed(name_of[i])) {
      ++fixed
    }
  }
  for (name in target) ++targets
  for (i = 1; i <= NR; ++i) {
    name = name_of[i]
    if (name ~ / --> /) continue
    if (group_of[i] == "arm") {
      if (name in target) { chosen[i] = 1; held[i] = 1 }
      else chosen[i] = keep("arm", int(arm * n / d + 0.5) - targets, arm - targets)
    } else if (group_of[i] == "libraries") {
      # The most numerous group makes room for the entries that stay whatever the share is.
      chosen[i] = keep("libraries", int((libraries + fixed) * n / d + 0.5) - fixed, libraries)
    } else if (needed(name)) {
      chosen[i] = 1
      if (name ~ /\.exe$|^armlib\//) cut[i] = int(bytes_of[i] * n / d)
      if (name == filler) { cut[i] = 0; last = i }
    } else if (group_of[i] ~ /^release (libraries|examples)$/) {
      rest = substr(name, index(name, "/") + 1)
      if (!(rest in same)) same[rest] = keep(group_of[i], n, d)
      chosen[i] = same[rest]
    } else {
      chosen[i] = keep(group_of[i], n, d)
    }
    if (chosen[i]) sum += (i in cut) ? cut[i] : bytes_of[i]
  }

  # A toolchain's few big files decide about the bytes: swap until the filler has little left to fill.
  for (swaps = 0; swaps < 200; ++swaps) {
    left = bytes - sum
    if (left >= least && left <= 16 * least) break
    best = 0
    out = 0
    if (left < least) {  # the smallest that is big enough goes, and the smallest that is out comes
      for (i = 1; i <= NR; ++i) if (group_of[i] == "arm" && name_of[i] !~ / --> / && !held[i]) {
        if (chosen[i] && (!out || bytes_of[i] >= least - left)) out = i
        if (!chosen[i]) best = i
      }
    } else {             # the smallest goes, and the biggest that still fits comes
      for (i = 1; i <= NR; ++i)
        if (group_of[i] == "arm" && name_of[i] !~ / --> / && !held[i] && chosen[i]) out = i
      for (i = 1; i <= NR && !best; ++i)
        if (group_of[i] == "arm" && name_of[i] !~ / --> / && !chosen[i] &&
            bytes_of[i] - bytes_of[out] <= left - least) best = i
    }
    if (!out || !best || bytes_of[out] == bytes_of[best]) break
    chosen[out] = 0
    chosen[best] = 1
    sum += bytes_of[best] - bytes_of[out]
  }
  if (bytes - sum < 1) {
    print "the files to keep have " sum " bytes, more than " bytes > "/dev/stderr"
    exit 1
  }
  cut[last] = bytes - sum
  for (i = 1; i <= NR; ++i)
    if (chosen[i]) { if (i in cut) print "cut", name_of[i], cut[i]; else print "link", name_of[i] }
  for (name in alias) print "link", name
}
