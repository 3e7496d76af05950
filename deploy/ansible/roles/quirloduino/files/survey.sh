# shellcheck shell=sh
# Lists the Arduino folders of a host, one a line: path, the first line of its version marker, tabs
# between them. Reads this host and changes nothing. A folder that two names lead to counts once.
#
#   sh survey.sh COUNT FOLDER... PATTERN...    COUNT folders are taken as they stand
set -eu
newline='
' tab=$(printf '\t')
seen=$newline

tell() {
  real=$(cd "$1" 2>/dev/null && pwd -P) || real=$1
  case $seen in *"$newline$real$newline"*) return 0 ;; esac
  seen=$seen$real$newline
  marker=
  if [ -f "$1/lib/quirloduino.txt" ]; then
    IFS= read -r marker <"$1/lib/quirloduino.txt" || true
  fi
  printf '%s%s%s\n' "$1" "$tab" "$marker"
}

count=$1
shift
while [ "$count" -gt 0 ]; do
  tell "$1"
  shift
  count=$((count - 1))
done
IFS=
for pattern; do
  for folder in $pattern; do # unquoted: the shell expands it, and with no IFS splits nothing
    if [ -f "$folder/lib/version.txt" ]; then tell "${folder%/}"; fi
  done
done
