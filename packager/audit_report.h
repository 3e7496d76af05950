// What `check` prints of an audit: lines for people, or JSON (RFC 8259) for scripts.
#pragma once

#include <string>

#include "packager/install_audit.h"
#include "packager/payload_listing.h"

// A line for each finding, a line for each thing worth a note, and a last one that sums up.
// Unprintable bytes of what was found are shown as \xNN. `wanted_marker` is what the payload's
// marker says.
std::string AuditText(const HostAudit& audit, const std::string& host, const std::string& release,
                      const std::string& wanted_marker);

// The same as one object. What isn't UTF-8 is replaced.
std::string AuditJson(const HostAudit& audit, const std::string& host, const std::string& release,
                      const std::string& wanted_marker);
