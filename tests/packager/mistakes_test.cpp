// Every mistake of mistakes/cases.txt, as an author meets it, and the page that lists what is said
// of them: each line that the program says stands there, and each that stands there is said.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <sstream>

#include "tests/packager/payload_fixture.h"

namespace fs = std::filesystem;

namespace {

const std::string kFolder = PROJECT_FOLDER "/tests/packager/mistakes";
const std::string kPage = PROJECT_FOLDER "/docs/payload_messages.md";

struct Mistake {
  std::string name;
  std::string steps;
  std::vector<std::string> options;
  std::string refused;              // empty when it isn't
  std::vector<std::string> warned;  // in the order told
};

void PrintTo(const Mistake& mistake, std::ostream* stream) {
  *stream << mistake.name;
}

std::vector<std::string> Words(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

// What follows `word` in the line, if it begins with it.
bool Take(const std::string& line, const std::string& word, std::string* rest) {
  if (!line.starts_with(word)) return false;
  *rest = line.substr(word.size());
  return true;
}

void AddLine(const std::string& line, Mistake* mistake) {
  std::string rest;
  if (line == "packed") return;
  if (Take(line, "refused: ", &rest)) {
    mistake->refused = rest;
  } else if (Take(line, "warned: ", &rest)) {
    mistake->warned.push_back(rest);
  } else if (Take(line, "options: ", &rest)) {
    mistake->options = Words(rest);
  } else {
    mistake->steps += line + "\n";
  }
}

std::vector<Mistake> ReadMistakes() {
  std::vector<Mistake> mistakes;
  std::istringstream lines(ReadFile(kFolder + "/cases.txt"));
  for (std::string line; std::getline(lines, line);) {
    if (line.empty() || line[0] == '#') continue;
    if (line[0] != ' ') {
      mistakes.push_back({line, "", {}, "", {}});
    } else {
      AddLine(line.substr(line.find_first_not_of(' ')), &mistakes.back());
    }
  }
  return mistakes;
}

const std::vector<Mistake>& Mistakes() {
  static const std::vector<Mistake> mistakes = ReadMistakes();
  return mistakes;
}

class AuthorsMistake : public testing::TestWithParam<Mistake> {
 protected:
  AuthorsMistake() {
    fs::copy(kFolder + "/tree", dir_ / "tree", fs::copy_options::recursive);
    const ProgramResult made =
        Run("/bin/sh", {"-ec", "picture() { " MAKE_PICTURE " \"$@\"; }\n" + GetParam().steps});
    EXPECT_EQ(made.status, 0) << made.error;
  }

  ProgramResult Run(const std::string& program, const std::vector<std::string>& arguments) const {
    ProgramOptions options;
    options.directory = dir_ / "tree";
    return RunProgram(program, arguments, options);
  }

  ProgramResult Pack(std::vector<std::string> more) const {
    std::vector<std::string> arguments = {"pack", ".", "--output", "../out", "--level", "1"};
    more.insert(more.end(), GetParam().options.begin(), GetParam().options.end());
    arguments.insert(arguments.end(), more.begin(), more.end());
    return Run(PACK_PROGRAM, arguments);
  }

  void ExpectRefused(const ProgramResult& result, const std::string& line) const {
    EXPECT_EQ(result.error, "quirloduino-pack: " + line + "\n");
    EXPECT_EQ(result.output, "");
    EXPECT_EQ(result.status, 2);
    EXPECT_TRUE(!fs::exists(dir_ / "out") || ReadTree(dir_ / "out").empty());
  }

  TempDir dir_;
};

TEST_P(AuthorsMistake, IsTold) {
  const Mistake& mistake = GetParam();
  const ProgramResult result = Pack({});
  if (!mistake.refused.empty()) return ExpectRefused(result, mistake.refused);
  std::string told;
  for (const std::string& line : mistake.warned) {
    told += "quirloduino-pack: warning: " + line + "\n";
  }
  EXPECT_EQ(result.error, told);
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(ReadTree(dir_ / "out").size(), 3U);

  fs::remove_all(dir_ / "out");
  const ProgramResult strict = Pack({"--strict"});
  if (!mistake.warned.empty()) return ExpectRefused(strict, mistake.warned.front());
  EXPECT_EQ(strict.error, "");
  EXPECT_EQ(strict.status, 0);
}

INSTANTIATE_TEST_SUITE_P(All, AuthorsMistake, testing::ValuesIn(Mistakes()),
                         [](const auto& instance) {
                           std::string name = instance.param.name;
                           std::replace(name.begin(), name.end(), '-', '_');
                           return name;
                         });

// A message of the page, cut where it has FILE, TEXT, KEY or N for whatever stands there.
struct Message {
  std::string text;
  std::vector<std::string> parts;  // what the line begins with, ..., what it ends in
  std::vector<std::string> marks;  // what stands between each part and the next
};

Message ReadMessage(const std::string& text) {
  Message message{text, {""}, {}};
  std::string word;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    if (i < text.size() && std::isupper(static_cast<unsigned char>(text[i])) != 0) {
      word += text[i];
      continue;
    }
    const bool stands_for_any = word == "FILE" || word == "TEXT" || word == "KEY" || word == "N";
    if (stands_for_any) {
      message.parts.emplace_back();
      message.marks.push_back(word);
    } else {
      message.parts.back() += word;
    }
    word.clear();
    if (i < text.size()) message.parts.back() += text[i];
  }
  return message;
}

bool CanStandFor(const std::string& mark, const std::string& text) {
  if (text.empty()) return false;
  if (mark == "KEY") return text.find(' ') == std::string::npos;
  return mark != "N" || text.find_first_not_of("0123456789") == std::string::npos;
}

// Whether the parts follow one another in the line, each with what its mark stands for between.
bool Matches(const std::string& line, const Message& message) {
  if (!line.starts_with(message.parts.front())) return false;
  std::size_t at = message.parts.front().size();
  for (std::size_t i = 1; i < message.parts.size(); ++i) {
    const std::string& part = message.parts[i];
    const bool is_last = i + 1 == message.parts.size();
    if (is_last && !line.ends_with(part)) return false;
    const std::size_t next = is_last ? line.size() - part.size() : line.find(part, at + 1);
    if (next == std::string::npos || next < at) return false;
    if (!CanStandFor(message.marks[i - 1], line.substr(at, next - at))) return false;
    at = next + part.size();
  }
  return at == line.size();
}

// The messages of the page, which stand between backticks in the first column of its tables: those
// of a tree, or those of a table that no tree gives.
std::vector<Message> Messages(bool of_a_tree) {
  const std::string page = ReadFile(kPage);
  const std::size_t others = page.find("\n## What a tree can't have\n");
  std::istringstream lines(of_a_tree ? page.substr(0, others) : page.substr(others));
  std::vector<Message> messages;
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("| `")) continue;
    std::string text = line.substr(3, line.find("` |") - 3);
    const std::size_t bar = text.find("\\|");  // within a table a bar is written so
    if (bar != std::string::npos) text.erase(bar, 1);
    messages.push_back(ReadMessage(text));
  }
  return messages;
}

std::vector<std::string> AllLines() {
  std::vector<std::string> all;
  for (const Mistake& mistake : Mistakes()) {
    if (!mistake.refused.empty()) all.push_back(mistake.refused);
    all.insert(all.end(), mistake.warned.begin(), mistake.warned.end());
  }
  return all;
}

TEST(PayloadMessages, EachLineOfTheProgramIsOneOfThePage) {
  const std::vector<Message> messages = Messages(true);
  for (const std::string& line : AllLines()) {
    EXPECT_EQ(std::count_if(messages.begin(), messages.end(),
                            [&line](const Message& message) { return Matches(line, message); }),
              1)
        << line;
  }
}

TEST(PayloadMessages, EachMessageOfThePageIsSaid) {
  const std::vector<std::string> lines = AllLines();
  for (const Message& message : Messages(true)) {
    EXPECT_TRUE(std::any_of(lines.begin(), lines.end(), [&message](const std::string& line) {
      return Matches(line, message);
    })) << message.text;
  }
}

// The texts of a source, those that follow one another joined as the compiler does.
std::vector<std::string> Literals(const std::string& source) {
  std::vector<std::string> literals;
  bool continues = false;
  for (std::size_t i = 0; i < source.size(); ++i) {
    if (source.compare(i, 2, "//") == 0 || source[i] == '#') {
      i = std::min(source.find('\n', i), source.size());
    } else if (source[i] == '\'') {
      i = source.find('\'', i + (source[i + 1] == '\\' ? 3 : 1));
    } else if (source[i] == '"') {
      if (!continues) literals.emplace_back();
      for (++i; source[i] != '"'; ++i) {
        if (source[i] == '\\') ++i;
        literals.back() += source[i];
      }
      continues = true;
    } else if (std::isspace(static_cast<unsigned char>(source[i])) == 0) {
      continues = false;
    }
  }
  return literals;
}

// All texts of the sources that judge a payload, one a line.
std::string WordsOfTheRules() {
  std::string all;
  for (const std::string file :
       {"class_rules", "control_file_rules", "criteria_rules", "host_match", "install_forecast",
        "name_rules", "order_rules", "payload_plan", "payload_rules", "payload_tree",
        "picture_rules", "place_rules", "release_name", "warnings"}) {
    for (const std::string& words :
         Literals(ReadFile(PROJECT_FOLDER "/packager/" + file + ".cpp"))) {
      all += words + "\n";
    }
  }
  return all;
}

// Words that no case brings about would otherwise be missing on the page, and nobody would notice.
TEST(PayloadMessages, AllWordsOfTheRulesStandOnThePage) {
  std::string page;
  for (const bool of_a_tree : {true, false}) {
    for (const Message& message : Messages(of_a_tree)) page += message.text + "\n";
  }
  std::istringstream lines(WordsOfTheRules());
  for (std::string words; std::getline(lines, words);) {
    if (words.size() < 12 || words.find(' ') == std::string::npos) continue;
    EXPECT_NE(page.find(words), std::string::npos) << words;
  }
}

TEST(PayloadMessages, WhatNoTreeBringsAboutStandsInTheRules) {
  const std::string words = WordsOfTheRules();
  for (const Message& message : Messages(false)) {
    for (std::string part : message.parts) {
      part.erase(0, part.find_first_of("abcdefghijklmnopqrstuvwxyz"));
      if (part.size() < 6) continue;
      part.resize(std::min<std::size_t>(part.size(), 12));  // a source may end in a name of its own
      EXPECT_NE(words.find(part), std::string::npos) << message.text << ": " << part;
    }
  }
}

}  // namespace
