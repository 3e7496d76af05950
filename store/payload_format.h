// The words and bounds of a payload: what its files and folders are called, what stands in its
// control files, and how long each may be. The installer and the packager read them here, so that
// an author's tools look for exactly what the program will look for. docs/store_format.md and
// docs/criteria_language.md describe the formats.
#pragma once

#include <cstddef>

// An alias, "<left> --> <target>": the path to install, and the exact name of the earlier entry
// that holds its content.
inline constexpr char kAliasSeparator[] = " --> ";
inline constexpr std::size_t kLongestAliasLeft = 511;

// Folders of the payload's root. A name that begins with a digit belongs to a release instead: its
// first component is the release's name.
inline constexpr char kArmFolder[] = "arm/";  // the only one with aliases
inline constexpr char kArmNoneEabiFolder[] = "arm-none-eabi/";
inline constexpr char kAvrQuirloFolder[] = "avrquirlo/";
inline constexpr char kOtherLibsFolder[] = "otherlibs/";
inline constexpr char kOtherLibsWindowsFolder[] = "otherlibs/WINDOWS/";
inline constexpr char kCoresFolder[] = "cores/";
inline constexpr char kArmLibFolder[] = "armlib/";

// Folders of the root and of a release alike.
inline constexpr char kLibrariesFolder[] = "libraries/";
inline constexpr char kExamplesFolder[] = "examples/";

// A folder of libraries/ is one library. Its companions, libraries/<name>.txt and .png, are for the
// library page and are never installed.
inline constexpr std::size_t kLongestLibraryName = 255;
inline constexpr char kDescriptionEnding[] = ".txt";
inline constexpr char kPictureEnding[] = ".png";

// Below a release: its control files, the class files for the host's two archives, and files of a
// fixed name.
inline constexpr char kWindowsFolder[] = "WINDOWS/";
inline constexpr char kIdeJarTree[] = "WINDOWS/pde.jar/";
inline constexpr char kCoreJarTree[] = "WINDOWS/arduino-core.jar/";
inline constexpr char kClassEnding[] = ".class";
inline constexpr char kJavaEnding[] = ".java";
inline constexpr char kBoardsFile[] = "boards.txt";
inline constexpr char kPlatformFile[] = "platform.txt";
inline constexpr char kKeywordsFile[] = "keywords.txt";  // cores/ may have one too
inline constexpr char kOwnKeywordsFile[] = "keywords_quirlo.txt";
inline constexpr char kThemeFile[] = "theme.txt";

// A release is supported because there is an entry whose name is the release's and this ending.
inline constexpr char kCriteriaFileEnding[] = "/WINDOWS/directory_criteria.txt";
inline constexpr char kLocationsFileEnding[] = "/WINDOWS/locations.txt";
inline constexpr std::size_t kMostReleases = 20;

// Names in the WINDOWS folder that are known to be a virus scanner's concern. Never installed.
inline constexpr const char* kBundleEndings[] = {"/Info.plist", "/JavaApplicationStub",
                                                 "/CodeResources"};

// The driver's files.
inline constexpr char kDriverInfEnding[] = ".inf";
inline constexpr char kDriverCatalogEnding[] = ".cat";

// The version marker, always the last entry.
inline constexpr char kVersionMarkerName[] = "quirloduino.txt";

// The wizard's own pictures in the root, in table order.
inline constexpr char kFinalPicture[] = "final.png";
inline constexpr char kWelcomePicture[] = "screenshot.png";
inline constexpr char kLogoPicture[] = "quirlo_icon.png";
inline constexpr char kBoardPicture[] = "quirlo_main.png";
inline constexpr char kSparePicture[] = "sc.png";  // on no page
inline constexpr const char* kPictures[] = {kFinalPicture, kSparePicture, kWelcomePicture,
                                            kLogoPicture, kBoardPicture};

// The files of the root that are no pictures, in table order. What is a tool goes to the host's
// tools; the others have a rule of their own or are carried without being installed.
inline constexpr char kPluginName[] = "Q4Security.jar";
struct RootFile {
  const char* name;
  bool is_tool;
};
inline constexpr RootFile kRootFiles[] = {
    {"quirlo.exe", true},           {"quirlo_post_compile.exe", true},
    {"quirlo_reboot.exe", true},    {"quirlo_cleanup.exe", true},
    {"quirlo_size.exe", true},      {"quirlo_restart.exe", true},
    {"quirlo_gateway.exe", true},   {"quirlo_ports.exe", true},
    {"quirlo_serialmon.exe", true}, {"quirlo_secure.exe", true},
    {kPluginName, false},           {"mktinyfat.exe", true},
    {"stdout_redirect.exe", true},  {"precompile_helper.exe", true},
    {"vscode_plugins.exe", false},  {"post_install.bat", false},
    {"pre_uninstall.bat", true}};

// A file below cores/ of exactly this size that begins with the mark is removed from the host. What
// its last byte is doesn't count.
inline constexpr char kRemovalMark[] = "// this file no longer used";
inline constexpr std::size_t kRemovalSize = 28;  // the mark and its line end

// The keys of locations.txt. A folder's key ends in "_SUBDIR", and its value in "/".
inline constexpr char kToolKey[] = "TOOL_SUBDIR";
inline constexpr char kPluginKey[] = "PLUGIN_SUBDIR";
inline constexpr char kArmLibKey[] = "ARMLIB_SUBDIR";
inline constexpr char kLibraryKey[] = "LIBRARY_SUBDIR";
inline constexpr char kCoresKey[] = "CORES_SUBDIR";
inline constexpr char kKeywordsKey[] = "KEYWORDS_SUBDIR";
inline constexpr char kVersionKey[] = "VERSION_SUBDIR";
inline constexpr char kExamplesKey[] = "EXAMPLES_SUBDIR";
inline constexpr char kBoardsKey[] = "BOARDS_SUBDIR";
inline constexpr char kIdeJarKey[] = "ARDUINO_JAR_FILE1";
inline constexpr char kCoreJarKey[] = "ARDUINO_JAR_FILE2";

// All that the program asks for; every release's file must define them.
inline constexpr const char* kLocationKeys[] = {kToolKey,   kPluginKey,   kArmLibKey,  kLibraryKey,
                                                kCoresKey,  kKeywordsKey, kVersionKey, kExamplesKey,
                                                kBoardsKey, kIdeJarKey,   kCoreJarKey};

// The keywords of directory_criteria.txt, in the order in which a line is tried for them.
inline constexpr char kDirKeyword[] = "dir:";
inline constexpr char kFileKeyword[] = "file:";
inline constexpr char kVersionKeyword[] = "version:";
inline constexpr char kZipfileKeyword[] = "zipfile:";
inline constexpr char kZipcksumKeyword[] = "zipcksum:";

// The most pairs of checksum and size that one zipcksum: line can hold.
inline constexpr std::size_t kMostPairs = 15;
