# Ranks the toolchain's files by how much a tree wants them, and names programs as Windows has them.
# Input: "bytes TAB mode TAB name TAB file". Prints "rank TAB bytes TAB name TAB file". The big archives
# are those of two processors only, and two programs that are nearly the same as others aren't there: with
# them the content would shrink much further than a real installer's. Manuals as PDF, which hardly shrink,
# come first for the same reason.
BEGIN {
  FS = OFS = "\t"
  served = "/thumb/(v7e-m/nofp|v7e-m\\+fp/hard)/"
}
{
  leaf = $3
  sub(/.*\//, "", leaf)
  executable = $2 ~ /[1357]..$/
  program = executable && ($3 ~ /\/bin\// || leaf !~ /\./) && $3 !~ /\/include\//
  archive = leaf ~ /\.[ao]$/
  if (leaf ~ /lto-dump$/ || $3 ~ /\/or1k-elf\/.*\/lto1$/) next
  if (program || $3 ~ /\/pdf\//) rank = 1
  else if (archive && $3 ~ served) rank = 2
  else if (archive && $1 > 400000) next
  else if ($3 ~ /\/include\/|\/ldscripts\//) rank = $3 ~ /\/(thumb|arm)\// ? 4 : 3
  else rank = 5
  print rank, $1, program ? $3 ".exe" : $3, $4
}
