#include "engine/disposition_rules.h"

#include <cstring>
#include <iterator>

#include "platform/text.h"
#include "store/entry_names.h"
#include "store/payload_format.h"

namespace {

// What every rule looks at.
struct Question {
  const DispositionEntry& entry;
  const DispositionContext& context;
  const char* name;
  const char* in_release;  // what follows the selected release's name and "/", or null
};

// A row of the list. `test` returns the name under which the entry would be written, which is the
// entry's own or a part of it, or null when the rule doesn't apply. `decide` fills the answer in.
struct Rule {
  const char* title;
  const char* (*test)(const Question& question, const char* text);
  const char* text;
  void (*decide)(const Question& question, const Rule& rule, Disposition* answer);
  const char* key = nullptr;
  const char* below = "";  // a fixed folder below the key's, or without a key below the host's
  bool antivirus_hint = false;
};

bool Equals(const char* text, const char* other) {
  return std::strcmp(text, other) == 0;
}

// Tests on the whole name.

const char* Is(const Question& question, const char* text) {
  return Equals(question.name, text) ? question.name : nullptr;
}

const char* EndsIn(const Question& question, const char* text) {
  return EndsWith(question.name, text) ? question.name : nullptr;
}

const char* BeginsWith(const Question& question, const char* text) {
  return AfterPrefix(question.name, text);
}

const char* IsAny(const Question& question, const char* /*text*/) {
  return question.name;
}

// Whether the release's text begins with all of the selected release's name. No separator is
// compared, since the question is put both ways: does the entry belong to the release, and is the
// release the one of a literal.
bool BeginsWithRelease(const Question& question, const char* text) {
  return AfterPrefix(text, question.context.release) != nullptr;
}

const char* IsOfAnotherRelease(const Question& question, const char* /*text*/) {
  const bool has_digit = question.name[0] >= '0' && question.name[0] <= '9';
  return has_digit && !BeginsWithRelease(question, question.name) ? question.name : nullptr;
}

const char* IsTool(const Question& question, const char* /*text*/) {
  for (const RootFile& file : kRootFiles) {
    if (file.is_tool && Equals(question.name, file.name)) return question.name;
  }
  return nullptr;
}

// The toolchain's names are kept whole, with their first component.
const char* IsOfToolchain(const Question& question, const char* /*text*/) {
  for (const char* folder : {kArmNoneEabiFolder, kArmFolder, kAvrQuirloFolder}) {
    if (AfterPrefix(question.name, folder) != nullptr) return question.name;
  }
  return nullptr;
}

// Only here is the alias separator looked for. Elsewhere it is a part of the file's name.
const char* IsAlias(const Question& question, const char* separator) {
  if (std::strstr(question.name, separator) == nullptr) return nullptr;
  return IsOfToolchain(question, "");
}

// Tests on what follows the selected release.

const char* ReleaseIs(const Question& question, const char* text) {
  return question.in_release != nullptr && Equals(question.in_release, text) ? question.in_release
                                                                             : nullptr;
}

const char* ReleaseEndsIn(const Question& question, const char* text) {
  return question.in_release != nullptr && EndsWith(question.name, text) ? question.in_release
                                                                         : nullptr;
}

const char* ReleaseBeginsWith(const Question& question, const char* text) {
  return question.in_release == nullptr ? nullptr : AfterPrefix(question.in_release, text);
}

const char* IsClassOf(const Question& question, const char* tree) {
  return EndsWith(question.name, kClassEnding) ? ReleaseBeginsWith(question, tree) : nullptr;
}

const char* IsOfBundle(const Question& question, const char* folder) {
  for (const char* ending : kBundleEndings) {
    if (EndsWith(question.name, ending)) return ReleaseBeginsWith(question, folder);
  }
  return nullptr;
}

// Tests on what follows "cores/".

// Three headers that the oldest releases brought themselves.
const char* IsOldNetworkHeader(const Question& question, const char* folder) {
  const char* rest = AfterPrefix(question.name, folder);
  if (rest == nullptr) return nullptr;
  for (const char* header : {"quirlo/Udp.h", "quirlo/Server.h", "quirlo/Client.h"}) {
    if (!Equals(rest, header)) continue;
    const bool is_old =
        BeginsWithRelease(question, "0022/") || BeginsWithRelease(question, "0023/");
    return is_old ? rest : nullptr;
  }
  return nullptr;
}

// Only here does the mark remove. An entry elsewhere with the same content is written, which blanks
// the host's own copy; the two are not to be unified.
const char* HoldsRemovalMark(const Question& question, const char* folder) {
  const char* rest = AfterPrefix(question.name, folder);
  if (rest == nullptr || question.entry.size != kRemovalSize) return nullptr;
  const bool is_marked =
      std::memcmp(question.entry.bytes, kRemovalMark, std::strlen(kRemovalMark)) == 0;
  return is_marked ? rest : nullptr;
}

const char* IsCoresKeywords(const Question& question, const char* folder) {
  const char* rest = AfterPrefix(question.name, folder);
  return rest != nullptr && Equals(rest, kKeywordsFile) ? rest : nullptr;
}

// Also a test on what follows "libraries/": a description or picture, for the library page.
const char* LiesDirectlyIn(const Question& question, const char* folder) {
  const char* rest = AfterPrefix(question.name, folder);
  return rest != nullptr && std::strchr(rest, '/') == nullptr ? rest : nullptr;
}

// Tests on what follows "libraries/" and holds a "/".

const char* HasOverlongLibrary(const Question& question, const char* folder) {
  const char* rest = AfterPrefix(question.name, folder);
  return rest != nullptr && std::strcspn(rest, "/") > kLongestLibraryName ? rest : nullptr;
}

const char* IsOfUnselectedLibrary(const Question& question, const char* folder) {
  const char* rest = AfterPrefix(question.name, folder);
  if (rest == nullptr) return nullptr;
  const std::size_t length = std::strcspn(rest, "/");
  char library[kLongestLibraryName + 1];
  std::memcpy(library, rest, length);
  library[length] = '\0';
  const DispositionContext& context = question.context;
  return context.library_selected(context.user, library) ? nullptr : rest;
}

// Decisions. Each finds `file` set to what the test returned, and the action kFail.

void PassOver(const Question& /*question*/, const Rule& /*rule*/, Disposition* answer) {
  answer->action = DispositionAction::kPassOver;
}

void Fail(const Question& /*question*/, const Rule& /*rule*/, Disposition* /*answer*/) {}

// The rule's place, followed by `length` characters of `folder`. False, which leaves the decision a
// failure, when the release doesn't define the key: the packager refuses such a release, and a
// payload that has got by all the same must not spill its files into the host's root.
bool Place(const Question& question, const Rule& rule, const char* folder, std::size_t length,
           Disposition* answer) {
  answer->key = rule.key;
  const char* value = "";
  if (rule.key != nullptr) value = question.context.location(question.context.user, rule.key);
  if (value == nullptr) return false;
  FormatBounded(answer->place, sizeof answer->place, "%s%s%.*s", value, rule.below,
                static_cast<int>(length), folder);
  return true;
}

void Write(const Question& question, const Rule& rule, Disposition* answer) {
  if (Place(question, rule, "", 0, answer)) answer->action = DispositionAction::kWriteFile;
}

void WriteObject(const Question& question, const Rule& rule, Disposition* answer) {
  if (Place(question, rule, "", 0, answer)) answer->action = DispositionAction::kWriteObject;
}

void Remove(const Question& question, const Rule& rule, Disposition* answer) {
  if (Place(question, rule, "", 0, answer)) answer->action = DispositionAction::kRemove;
}

// A core's file is named by its last part alone; what comes before belongs to the folder.
void WriteCore(const Question& question, const Rule& rule, Disposition* answer) {
  const char* folder = answer->file;
  answer->file = std::strrchr(folder, '/') + 1;
  answer->file_length = std::strlen(answer->file);
  const auto length = static_cast<std::size_t>(answer->file - folder);
  if (Place(question, rule, folder, length, answer)) answer->action = DispositionAction::kWriteFile;
}

// An alias gets the content of an earlier entry: a full, independent copy, no link of any kind.
void WriteAlias(const Question& question, const Rule& rule, Disposition* answer) {
  const char* separator = std::strstr(answer->file, rule.text);
  answer->file_length = static_cast<std::size_t>(separator - answer->file);
  if (answer->file_length > kLongestAliasLeft) return;
  const char* target = separator + std::strlen(rule.text);
  const DispositionContext& context = question.context;
  const int index = context.find_entry_below(context.user, target, question.entry.index);
  if (index < 0) {
    answer->error = "internal file reference error!!";
    return;
  }
  answer->source = static_cast<std::uint32_t>(index);
  Write(question, rule, answer);
}

// The list. The first rule whose test holds decides; the order is the design.
constexpr Rule kRules[] = {
    {"another release's", IsOfAnotherRelease, "", PassOver},
    {"driver INF, for the driver page", EndsIn, kDriverInfEnding, PassOver},
    {"board list", ReleaseIs, kBoardsFile, Write, kBoardsKey},
    {"platform description", ReleaseIs, kPlatformFile, Write, kBoardsKey},
    {"tool", IsTool, "", Write, kToolKey, "", true},
    {"plugin", Is, kPluginName, Write, kPluginKey, "Q4Security/tool/"},
    {"other tool", BeginsWith, kOtherLibsWindowsFolder, Write, kToolKey},
    {"version marker", Is, kVersionMarkerName, Write, kVersionKey},
    {"toolchain, alias", IsAlias, kAliasSeparator, WriteAlias, kToolKey},
    {"toolchain", IsOfToolchain, "", Write, kToolKey},
    // The one folder that comes from no key.
    {"Java source", ReleaseEndsIn, kJavaEnding, Write, nullptr, "src/"},
    {"keywords", ReleaseIs, kKeywordsFile, Write, kKeywordsKey},
    {"own keywords", ReleaseIs, kOwnKeywordsFile, Write, kKeywordsKey},
    {"theme", ReleaseIs, kThemeFile, Write, kVersionKey, "theme/"},
    {"class of pde.jar", IsClassOf, kIdeJarTree, WriteObject, kIdeJarKey, "", true},
    {"class of arduino-core.jar", IsClassOf, kCoreJarTree, WriteObject, kCoreJarKey, "", true},
    // Recognised and never installed; the hint is set all the same.
    {"bundle file, not installed", IsOfBundle, kWindowsFolder, PassOver, nullptr, "", true},
    {"rest of WINDOWS/, not installed", ReleaseBeginsWith, kWindowsFolder, PassOver},
    {"core, for the oldest releases removed", IsOldNetworkHeader, kCoresFolder, Remove, kCoresKey},
    {"core, no longer used and removed", HoldsRemovalMark, kCoresFolder, Remove, kCoresKey},
    // Beside the board files, not into the cores folder.
    {"keywords of the cores", IsCoresKeywords, kCoresFolder, Write, kBoardsKey},
    {"core, without a folder", LiesDirectlyIn, kCoresFolder, Fail},
    {"core", BeginsWith, kCoresFolder, WriteCore, kCoresKey},
    // The user's ticks don't apply to a release's own libraries.
    {"release's library", ReleaseBeginsWith, kLibrariesFolder, Write, kLibraryKey},
    {"example", BeginsWith, kExamplesFolder, Write, kExamplesKey},
    {"math library", BeginsWith, kArmLibFolder, Write, kArmLibKey},
    {"release's example", ReleaseBeginsWith, kExamplesFolder, Write, kExamplesKey},
    {"library's text or picture, for the library page", LiesDirectlyIn, kLibrariesFolder, PassOver},
    {"library with an overlong name", HasOverlongLibrary, kLibrariesFolder, PassOver},
    {"library, not selected", IsOfUnselectedLibrary, kLibrariesFolder, PassOver},
    {"library", BeginsWith, kLibrariesFolder, Write, kLibraryKey},
    {"no rule", IsAny, "", PassOver},
};

}  // namespace

Disposition DecideEntry(const DispositionEntry& entry, const DispositionContext& context) {
  const Question question{entry, context, entry.name,
                          AfterPrefix(entry.name, ScratchConcat(context.release, "/"))};
  Disposition answer{};
  answer.action = DispositionAction::kFail;
  answer.source = entry.index;
  for (const Rule& rule : kRules) {
    answer.file = rule.test(question, rule.text);
    if (answer.file == nullptr) continue;
    answer.rule = static_cast<std::size_t>(&rule - kRules);
    answer.file_length = std::strlen(answer.file);
    answer.antivirus_hint = rule.antivirus_hint;
    rule.decide(question, rule, &answer);
    break;
  }
  return answer;
}

std::size_t DispositionRuleCount() {
  return std::size(kRules);
}

const char* DispositionRuleTitle(std::size_t rule) {
  return kRules[rule].title;
}
