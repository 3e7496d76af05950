# Trees of another size than the full one. Part of scripts/make-full-payload.

# A file's byte values, each K further: as compressible, and in common with the file itself by chance only.
turn() { # turn K FROM TO
  case $1 in
    2) tr '\000-\377' '\001-\377\000' ;;
    3) tr '\000-\377' '\002-\377\000-\001' ;;
    4) tr '\000-\377' '\003-\377\000-\002' ;;
  esac <"$2" >"$3"
}
link_tree() { # a copy of a tree that shares its files where the file system can
  cp -Rl "$1" "$2" 2>/dev/null || { rm -rf "$2" && cp -R "$1" "$2"; }
}
link_file() { ln "$1" "$2" 2>/dev/null || cp "$1" "$2"; }

scale_down() {
  sort -t "$tab" -k 2,2nr -k 1,1n "$work/list" |
    awk -f "$data/groups.awk" -f "$data/scale_down.awk" -v n="$numerator" -v d="$denominator" \
      -v bytes="$bytes" >"$work/plan" || exit 2
  cut -f 2 "$work/plan" | make_folders
  while IFS=$tab read -r how name size; do
    case $how in
      link) link_file "$full/$name" "$tree/$name" ;;
      cut)
        if [ "$name" = vscode_plugins.exe ]; then head -c "$size" "$full.filler"
        else head -c "$size" "$full/$name"
        fi >"$tree/$name" ;;
    esac
  done <"$work/plan"
}
scale_up() {
  rmdir "$tree"
  link_tree "$full" "$tree"
  for k in $(seq 2 "$numerator"); do
    say "turning the bytes of counterpart $k of $numerator"
    awk -f "$data/scale_up.awk" -v k="$k" "$work/list" >"$work/plan"
    cut -f 2 "$work/plan" | make_folders
    while IFS=$tab read -r how name file; do
      case $how in
        link) link_file "$full/$file" "$tree/$name" ;;
        turn) turn "$k" "$full/$file" "$tree/$name" ;;
      esac
    done <"$work/plan"
  done
}
make_scaled() { # the tree asked for, of the full one
  tree=$target.new
  rm -rf "$tree" "$target" "$target.origin"
  bytes=$(($(figure bytes) * numerator / denominator))
  "$tools/quirloduino-pack" list "$full" >"$work/list" || exit 2
  mkdir -p "$(dirname "$tree")" && mkdir "$tree"
  case $numerator/$denominator in
    1/1) rmdir "$tree"; link_tree "$full" "$tree" ;;
    1/*) scale_down ;;
    *) scale_up ;;
  esac
  say "$target"
  verify "$tree" "$scale" || fail "$tree is not the tree wanted"
  cp "$full.origin" "$target.origin"
  echo "scale $scale" >>"$target.origin"
  rm -rf "$target.host" && cp -R "$full.host" "$target.host"
  mv "$tree" "$target"
}
