#include "tests/properties/random_host.h"

#include <filesystem>

#include "recognition/cksum.h"
#include "tests/support/jars.h"
#include "tests/support/temp_dir.h"

namespace fs = std::filesystem;

namespace {

// Every archive has it, so that there is something to prove an archive by.
constexpr char kOwnMember[] = "processing/app/Own.class";
const std::string kOwnContent = "the host's own";

std::string JarOf(const InstallRequest& request, const std::string& key) {
  const auto found = request.locations.find(key);
  return found == request.locations.end() ? "lib/pde.jar" : found->second;
}

void MakeJar(Random* random, const std::string& path) {
  JarMembers members;
  for (std::size_t i = random->Below(8); i > 0; --i) {
    members[random->Of({"processing/app/", "cc/arduino/", "META-INF/", ""}) +
            random->Of({"Base.class", "Editor.class", "Other.class", "Base%s.class"})] =
        random->Bytes(3000);
  }
  members[kOwnMember] = kOwnContent;
  WriteJar(path, members);
}

// What an untouched copy of this payload's install would make, as places to put things before it.
ModelDisk UndisturbedInstall(const InstallRequest& request, const std::vector<TestEntry>& entries) {
  ModelDisk disk;
  disk.folders.insert("lib");
  for (const char* key : {"ARDUINO_JAR_FILE1", "ARDUINO_JAR_FILE2"}) {
    disk.files[JarOf(request, key)] = "";
    disk.jars[JarOf(request, key)] = {};
  }
  PredictInstall(entries, request, WalkEnd::kWizard, &disk);
  return disk;
}

// Puts a file where one will go, or a folder, or a file in the place of a folder.
void MakeSomethingInItsPlace(Random* random, const std::string& host, const std::string& place) {
  const fs::path path = host + "/" + place;
  std::error_code refused;
  fs::create_directories(path.parent_path(), refused);
  if (refused || fs::exists(path)) return;
  if (random->OneIn(40)) {
    fs::create_directory(path);
  } else {
    WriteFile(path, random->Bytes(900));
  }
}

}  // namespace

std::uint32_t Checksum(const std::string& bytes) {
  return CksumFinish(CksumUpdate(0, bytes.data(), bytes.size()), bytes.size());
}

void MakeRandomHost(Random* random, const std::string& path, const InstallRequest& request,
                    const std::vector<TestEntry>& entries, HostJars jars) {
  const std::string release = request.release.empty() ? "1.8.19" : request.release;
  WriteFile(path + "/lib/version.txt", release + random->Of({"\n", "", "\r\n", "-hourly\n"}));
  WriteFile(path + "/arduino.exe", random->Bytes(500));
  for (const char* key : {"ARDUINO_JAR_FILE1", "ARDUINO_JAR_FILE2"}) {
    const std::string jar = path + "/" + JarOf(request, key);
    if (fs::exists(jar)) continue;
    switch (jars == HostJars::kSound ? 3 : random->Below(40)) {
      case 0:
        break;  // missing
      case 1:
        fs::create_directories(jar);
        break;
      case 2:
        WriteFile(jar, "no archive at all");
        break;
      default:
        MakeJar(random, jar);
    }
  }
  if (random->OneIn(2)) {
    WriteFile(path + "/lib/quirloduino.txt",
              random->Of({"1.59", "1.60-beta1", "", "junk", "1.60-beta5", "1.100", "-3\n"}));
  }
  for (const auto& [file, content] : UndisturbedInstall(request, entries).files) {
    if (file.starts_with("lib/") || file.size() > 150) continue;
    if (random->OneIn(5)) MakeSomethingInItsPlace(random, path, file);
    if (random->OneIn(150)) {
      MakeSomethingInItsPlace(random, path, fs::path(file).parent_path().string());
    }
  }
  // What an earlier package left in the cores, some of it to be removed.
  for (const TestEntry& entry : entries) {
    if (!entry.name.starts_with("cores/") || entry.name.size() > 100) continue;
    if (!random->OneIn(3) || !request.locations.contains("CORES_SUBDIR")) continue;
    if (entry.name.find_first_of("\\\n") != std::string::npos || entry.name.ends_with('/'))
      continue;
    MakeSomethingInItsPlace(random, path,
                            request.locations.at("CORES_SUBDIR") + entry.name.substr(6));
  }
  for (const char* folder : {"Adafruit_GFX/", "openGLCD/fonts/", "SD/utility/", "SD/", "Own/"}) {
    if (!random->OneIn(3) || !request.locations.contains("LIBRARY_SUBDIR")) continue;
    MakeSomethingInItsPlace(random, path,
                            request.locations.at("LIBRARY_SUBDIR") + folder + "old.h");
  }
}

std::string MakeCriteria(Random* random, const std::string& path, const InstallRequest& request,
                         const std::vector<TestEntry>& entries) {
  std::string text = "version:lib/version.txt\n";
  if (random->OneIn(2)) text += "file:arduino.exe\n";
  if (random->OneIn(4)) text += "dir:lib\n";
  for (const auto& [key, tree] : {std::pair{"ARDUINO_JAR_FILE1", "pde.jar/"},
                                  std::pair{"ARDUINO_JAR_FILE2", "arduino-core.jar/"}}) {
    const std::string jar = JarOf(request, key);
    if (jar.find(' ') != std::string::npos) {
      text += "zipfile:" + jar + "\n";
      continue;
    }
    text += "zipcksum:" + jar + " " + std::to_string(Checksum(kOwnContent)) + " " +
            std::to_string(kOwnContent.size()) + " " + kOwnMember + "\n";
    if (!fs::is_regular_file(path + "/" + jar)) continue;
    JarMembers members;
    try {
      members = ReadJar(path + "/" + jar);
    } catch (const std::exception&) {
      continue;  // no archive
    }
    if (random->OneIn(3)) text += "zipfile:" + jar + "\n";
    for (const auto& [member, content] : members) {
      if (!random->OneIn(3)) continue;
      std::string pairs =
          " " + std::to_string(Checksum(content)) + " " + std::to_string(content.size());
      if (random->OneIn(2)) pairs = " 1 2" + pairs + " 3 " + std::to_string(content.size());
      // One jar may get the objects of both trees.
      for (const TestEntry& entry : entries) {
        if (!entry.name.starts_with(request.release + "/WINDOWS/") ||
            !entry.name.ends_with(".jar/" + member)) {
          continue;
        }
        pairs += " " + std::to_string(Checksum(entry.content)) + " " +
                 std::to_string(entry.content.size());
      }
      text += "zipcksum:" + jar + pairs + " " + member + "\n";
    }
  }
  return text;
}

std::string MakePreferences(Random* random) {
  std::string text;
  for (std::size_t i = random->Below(9); i > 0; --i) {
    switch (random->Below(6)) {
      case 0:
        text += "board=" + random->Of({"uno", "quirlo31", "quirlo41", "quirlo31 ", "", "quirloLC"});
        break;
      case 1:
        text += "target_package=" + random->Of({"arduino", "quirlo", ""});
        break;
      case 2:
        text += "target_platform=" + random->Of({"avr", "sam", ""});
        break;
      case 3:
        text += random->Of({" board=uno", "Board=uno", "board", "xboard=1", "target_package"});
        break;
      case 4:
        text += random->Bytes(60);
        break;
      default:
        text += random->Of({"editor.font=Monospaced,plain,12", "last.folder=C:\\x", ""});
    }
    if (i > 1 || !random->OneIn(3)) text += random->Of({"\n", "\r\n"});
  }
  if (random->OneIn(5))
    text = "board=quirlo41\ntarget_package=quirlo\r\ntarget_platform=avr\n" + text;
  return text;
}
