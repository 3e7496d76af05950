# Picks the toolchain's entries. Input, in the order of preference: "md5 TAB bytes TAB name TAB file".
# Prints "name TAB file" for the first `plain` files of new content, and for the first `aliases` files
# whose content an earlier pick has, since the packer turns exactly those into aliases. Fails when the
# input holds too few of either.
BEGIN { FS = OFS = "\t" }
{
  if (tolower($3) in taken) next  # Windows tells no case, and a file stands once
  if ($1 in seen) { if (copies == aliases) next; ++copies }
  else { if (originals == plain) next; ++originals; seen[$1] }
  taken[tolower($3)]
  print $3, $4
}
END {
  if (originals == plain && copies == aliases) exit 0
  print "too few toolchain files: " originals + 0 " plain, " copies + 0 " copies" > "/dev/stderr"
  exit 1
}
