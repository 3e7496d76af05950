# group(name): the group of figures that an entry belongs to, from its name; "" for none of them.
function group(name) {
  if (name ~ /^(arm|avrquirlo)\//) return "arm"
  if (name ~ /^[0-9][^\/]*\/WINDOWS\//) return "release WINDOWS"
  if (name ~ /^[0-9][^\/]*\/libraries\//) return "release libraries"
  if (name ~ /^[0-9][^\/]*\/examples\//) return "release examples"
  if (name ~ /^[0-9][^\/]*\/(boards|platform)\.txt$/) return "release board files"
  if (name ~ /^(examples|cores|libraries|armlib)\//) return substr(name, 1, index(name, "/") - 1)
  if (name ~ /\//) return ""
  if (name ~ /\.(cat|inf)$/) return "driver"
  if (name ~ /\.png$/) return "images"
  if (name == "quirloduino.txt") return "version marker"
  return "root tools"
}
