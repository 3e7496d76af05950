# recognise_folder.sh CRITERIA FOLDER : tries both archives and compares the checksum and size of each
# member that the criteria name. Prints how many are as they should be.
cd "$2" || exit 1
unzip -tqq lib/pde.jar && unzip -tqq lib/arduino-core.jar || exit 1
right=0
while IFS= read -r line; do
  case $line in zipcksum:*) ;; *) continue ;; esac
  archive=${line#zipcksum:}
  archive=${archive%% *}
  member=${line##* }
  sum=$(unzip -p "$archive" "$member" | cksum)
  case $line in *" ${sum% } "*) right=$((right + 1)) ;; esac
done <"$1"
echo $right
