#include "packager/payload_listing.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "packager/entry_names.h"
#include "packager/payload_order.h"
#include "packager/refusal.h"

namespace {

// Keys in the order in which they are set, which reads better than their sorted names.
using Json = nlohmann::ordered_json;

std::string ToText(const Json& json) {
  return json.dump(2) + "\n";
}

const char* ActionWord(DispositionAction action) {
  switch (action) {
    case DispositionAction::kPassOver:
      return "none";
    case DispositionAction::kWriteFile:
      return "file";
    case DispositionAction::kWriteObject:
      return "object";
    case DispositionAction::kRemove:
      return "removal";
    case DispositionAction::kFail:
      break;
  }
  return "failure";
}

std::string LandingText(const Foretold& foretold) {
  switch (foretold.action) {
    case DispositionAction::kPassOver:
      return "nowhere";
    case DispositionAction::kWriteFile:
      return LandingPath(foretold);
    case DispositionAction::kWriteObject:
      return LandingPath(foretold) + ": " + foretold.file;
    case DispositionAction::kRemove:
      return "removes " + LandingPath(foretold);
    case DispositionAction::kFail:
      break;
  }
  return "the install fails";
}

Json EntryJson(const PayloadFile& entry, std::size_t index) {
  return {{"index", index}, {"size", entry.size}, {"name", entry.name}};
}

void AddForecast(const PayloadView& payload, std::size_t index, const Foretold& foretold,
                 Json* json) {
  (*json)["action"] = ActionWord(foretold.action);
  if (const std::string path = LandingPath(foretold); !path.empty()) (*json)["path"] = path;
  if (foretold.action == DispositionAction::kWriteObject) (*json)["object"] = foretold.file;
  if (foretold.source != index) (*json)["content_of"] = payload.entries[foretold.source].name;
  (*json)["rule"] = DispositionRuleTitle(foretold.rule);
}

std::string EntryLine(const PayloadFile& entry, std::size_t index) {
  return std::to_string(index) + "\t" + std::to_string(entry.size) + "\t" + entry.name;
}

struct Counts {
  std::string release;
  std::vector<std::size_t> by_rule;
};

Counts CountByRule(const PayloadView& payload, const std::string& release) {
  const InstallForecast forecast(payload, release);
  Counts counts{release, std::vector<std::size_t>(DispositionRuleCount())};
  for (std::size_t i = 0; i < payload.entries.size(); ++i) ++counts.by_rule[forecast.At(i).rule];
  return counts;
}

std::string SummaryJson(const std::vector<Counts>& columns) {
  Json json = Json::object();
  for (const Counts& column : columns) {
    Json& rules = json[column.release] = Json::object();
    for (std::size_t rule = 0; rule < column.by_rule.size(); ++rule) {
      if (column.by_rule[rule] != 0) rules[DispositionRuleTitle(rule)] = column.by_rule[rule];
    }
  }
  return ToText(json);
}

std::string PaddedLeft(const std::string& text, std::size_t width) {
  return std::string(width - std::min(width, text.size()), ' ') + text;
}

constexpr std::size_t kTitleWidth = 50;
constexpr std::size_t kColumnWidth = 9;

// A row of the summary; no blank ends it.
std::string SummaryRow(std::string title, const std::vector<std::string>& cells) {
  if (title.size() < kTitleWidth) title.resize(kTitleWidth, ' ');
  for (const std::string& cell : cells) title += " " + PaddedLeft(cell, kColumnWidth);
  return title + "\n";
}

std::string SummaryText(const std::vector<Counts>& columns, std::size_t entries) {
  std::vector<std::string> heads;
  heads.reserve(columns.size());
  for (const Counts& column : columns) heads.push_back(column.release);
  std::string text = SummaryRow("entries by rule", heads);
  for (std::size_t rule = 0; rule < DispositionRuleCount(); ++rule) {
    std::vector<std::string> cells;
    bool has_any = false;
    for (const Counts& column : columns) {
      cells.push_back(std::to_string(column.by_rule[rule]));
      has_any = has_any || column.by_rule[rule] != 0;
    }
    if (has_any) text += SummaryRow(DispositionRuleTitle(rule), cells);
  }
  return text +
         SummaryRow("all", std::vector<std::string>(columns.size(), std::to_string(entries)));
}

std::size_t FindByPath(const PayloadView& payload, std::string_view name) {
  const auto position = std::find_if(
      payload.entries.begin(), payload.entries.end(), [name](const PayloadFile& entry) {
        return entry.name == name || InstalledPath(entry.name) == name;
      });
  if (position == payload.entries.end()) throw Refusal(name, "the payload has no such file");
  return static_cast<std::size_t>(position - payload.entries.begin());
}

// The names under which the entry's content is installed besides its own.
std::vector<std::string> AliasesOf(const PayloadView& payload, const std::string& name) {
  std::vector<std::string> aliases;
  for (const PayloadFile& entry : payload.entries) {
    const auto alias = SplitAlias(entry.name);
    if (alias && alias->target == name) aliases.emplace_back(alias->left);
  }
  return aliases;
}

}  // namespace

std::string EntryListing(const PayloadView& payload, ListingForm form) {
  Json json = Json::array();
  std::string text;
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    if (form == ListingForm::kJson) {
      json.push_back(EntryJson(payload.entries[i], i));
    } else {
      text += EntryLine(payload.entries[i], i) + "\n";
    }
  }
  return form == ListingForm::kJson ? ToText(json) : text;
}

std::string ForecastListing(const PayloadView& payload, const InstallForecast& forecast,
                            ListingForm form) {
  Json json = Json::array();
  std::string text;
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    const Foretold foretold = forecast.At(i);
    if (form == ListingForm::kJson) {
      json.push_back(EntryJson(payload.entries[i], i));
      AddForecast(payload, i, foretold, &json.back());
    } else {
      text += EntryLine(payload.entries[i], i) + "\t" + LandingText(foretold) + "\t" +
              DispositionRuleTitle(foretold.rule) + "\n";
    }
  }
  return form == ListingForm::kJson ? ToText(json) : text;
}

std::string ForecastSummary(const PayloadView& payload, const std::vector<std::string>& releases,
                            ListingForm form) {
  std::vector<Counts> columns;
  columns.reserve(releases.size());
  for (const std::string& release : releases) columns.push_back(CountByRule(payload, release));
  return form == ListingForm::kJson ? SummaryJson(columns)
                                    : SummaryText(columns, payload.entries.size());
}

std::string EntryExplanation(const PayloadView& payload, std::string_view name, ListingForm form) {
  const std::size_t index = FindByPath(payload, name);
  const PayloadFile& entry = payload.entries[index];
  const auto alias = SplitAlias(entry.name);
  const std::vector<std::string> aliases = AliasesOf(payload, entry.name);
  const std::string group(GroupTitle(GroupOf(entry.name)));

  Json json = EntryJson(entry, index);
  json["group"] = group;
  if (alias) json["alias_of"] = alias->target;
  json["aliases"] = aliases;
  std::string text(InstalledPath(entry.name));
  text += "\n  index " + std::to_string(index) + " of " + std::to_string(payload.entries.size()) +
          " entries, group " + group;
  if (alias) {
    text += "\n  an alias: has the content of " + std::string(alias->target) + "\n";
  } else {
    text += ", " + std::to_string(entry.size) + " bytes\n";
  }
  for (const std::string& other : aliases) text += "  its content also goes to " + other + "\n";

  Json& releases = json["releases"] = Json::object();
  for (const std::string& release : ReleasesOf(payload)) {
    const Foretold foretold = InstallForecast(payload, release).At(index);
    AddForecast(payload, index, foretold, &releases[release]);
    text += "  " + release + ": " + LandingText(foretold) + " (" +
            DispositionRuleTitle(foretold.rule) + ")\n";
  }
  return form == ListingForm::kJson ? ToText(json) : text;
}
