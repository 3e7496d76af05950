#include "packager/audit_report.h"

#include <nlohmann/json.hpp>

#include "packager/refusal.h"

namespace {

using Json = nlohmann::ordered_json;

const char* KindWord(FindingKind kind) {
  switch (kind) {
    case FindingKind::kMissing:
      return "missing";
    case FindingKind::kDiffers:
      return "differs";
    case FindingKind::kUnreadable:
      return "unreadable";
    case FindingKind::kRetired:
      return "retired";
    case FindingKind::kMarker:
      break;
  }
  return "marker";
}

std::string FindingLine(const Finding& finding) {
  std::string line = std::string(KindWord(finding.kind)) + ": " + finding.path;
  if (!finding.member.empty()) line += ": " + finding.member;
  std::string remark = finding.words;
  if (finding.kind == FindingKind::kRetired) remark = "an install removes it";
  if (finding.antivirus_hint) {
    remark +=
        (remark.empty() ? "" : "; ") + std::string("virus scanners interfere with such files");
  }
  if (!remark.empty()) line += " (" + remark + ")";
  return Printable(line) + "\n";
}

std::string Count(std::size_t count, const char* one, const char* several) {
  return std::to_string(count) + " " + (count == 1 ? one : several);
}

std::string Notes(const HostAudit& audit) {
  std::string text;
  for (const std::string& library : audit.absent_libraries) {
    text.append("note: nothing of the library ").append(library);
    text.append(" is there; if its user left it out, give --without ").append(library).append("\n");
  }
  for (const std::string& old : audit.old_libraries) {
    text.append("note: ").append(old).append(" is of an earlier version; the wizard removes it, ");
    text.append("a silent install doesn't\n");
  }
  return text;
}

}  // namespace

std::string AuditText(const HostAudit& audit, const std::string& host, const std::string& release,
                      const std::string& wanted_marker) {
  std::string text;
  for (const Finding& finding : audit.findings) text += FindingLine(finding);
  text += Notes(audit);
  text += Printable(host) + ": Arduino " + release + " with " + wanted_marker + ": " +
          Count(audit.files, "file", "files") + ", " +
          Count(audit.members, "member of archives", "members of archives") + ", " +
          Count(audit.removals, "removal", "removals") + ": ";
  text += audit.findings.empty() ? "all as installed"
                                 : Count(audit.findings.size(), "thing is not as installed",
                                         "things are not as installed");
  return text + "\n";
}

std::string AuditJson(const HostAudit& audit, const std::string& host, const std::string& release,
                      const std::string& wanted_marker) {
  Json findings = Json::array();
  for (const Finding& finding : audit.findings) {
    Json json = {{"kind", KindWord(finding.kind)}, {"path", finding.path}};
    if (!finding.member.empty()) json["member"] = finding.member;
    if (!finding.words.empty()) json["words"] = finding.words;
    json["antivirus"] = finding.antivirus_hint;
    findings.push_back(json);
  }
  Json json = {{"host", host},
               {"release", release},
               {"as_installed", audit.findings.empty()},
               {"marker", {{"wanted", wanted_marker}, {"found", nullptr}}},
               {"looked_at",
                {{"files", audit.files}, {"members", audit.members}, {"removals", audit.removals}}},
               {"findings", findings},
               {"absent_libraries", audit.absent_libraries},
               {"old_libraries", audit.old_libraries}};
  if (audit.marker) json["marker"]["found"] = *audit.marker;
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}
