# update_jars.sh TOOL OBJECTS LIB : puts the trees OBJECTS/pde.jar and OBJECTS/arduino-core.jar into
# the archives of these names in the folder LIB.
for jar in pde.jar arduino-core.jar; do
  cd "$2/$jar" || exit 1
  case $1 in
    zip) zip -q -r -D "$3/$jar" . || exit 1 ;;
    jar) find . -type f | sed 's|^\./||' >"$3/$jar.list" && jar uf "$3/$jar" "@$3/$jar.list" || exit 1 ;;
    7z) 7zz u -bd -bso0 -tzip "$3/$jar" . || exit 1 ;;
  esac
done
