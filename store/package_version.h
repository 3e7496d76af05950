// The version of the package that this program installs. The payload's version marker,
// quirloduino.txt, holds the same characters with no line end; the packager refuses any other.
#pragma once

inline constexpr char kPackageVersion[] = "1.60-beta5";
