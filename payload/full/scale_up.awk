# Gives each entry of a tree a counterpart of the same size in the same group. Input: the packer's list.
# Variable: k, the number of the counterpart. Prints "turn TAB name TAB file" for a file to be made of
# another with its byte values turned, so that it compresses as well as that and shares nothing with it,
# and "link TAB name TAB file" for an alias, which is the same file once more.
BEGIN { FS = OFS = "\t" }
{
  name = $3
  at = index(name, " --> ")
  if (at) {
    name = substr(name, 1, at - 1)
    print "link", "arm/" k substr(name, 4), name
    next
  }
  copy = name
  # Another folder beside each library, core or sketch; another package in each jar.
  if (name ~ /^(libraries|cores)\/[^\/]*\//) sub(/^[^\/]*\/[^\/]*/, "&_" k, copy)
  else if (name ~ /^[0-9][^\/]*\/libraries\/[^\/]*\//) sub(/\/libraries\/[^\/]*/, "&_" k, copy)
  else if (name ~ /^[0-9][^\/]*\/examples\//) sub(/\/examples/, "&/copy" k, copy)
  else if (name ~ /^examples\//) sub(/^examples/, "&/copy" k, copy)
  else if (name ~ /\/WINDOWS\/[^\/]*\.jar\/.*\.class$/) sub(/\.jar/, "&/copy" k, copy)
  else if (name ~ /^arm\//) copy = "avrquirlo/" k "/" name  # beside arm/, where a copy stays a copy
  else { gsub("/", "_", copy); copy = "avrquirlo/" k "/" copy }
  print "turn", copy, name
}
