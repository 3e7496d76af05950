#include "packager/check_command.h"

#include "packager/audit_report.h"
#include "packager/file_io.h"
#include "packager/host_match.h"
#include "packager/install_audit.h"
#include "packager/install_forecast.h"
#include "packager/payload_view.h"
#include "store/package_version.h"

bool CheckHost(const CheckRequest& request) {
  const PayloadView payload = OpenPayload(request.payload);
  const std::string release =
      request.release.empty() ? FindRelease(payload, request.host) : request.release;
  const InstallForecast forecast(payload, release,
                                 {request.left_out.begin(), request.left_out.end()});
  const HostAudit audit = AuditHost(payload, forecast, request.host);
  const auto report = request.form == ListingForm::kJson ? AuditJson : AuditText;
  PrintText(report(audit, request.host.string(), release, kPackageVersion));
  return audit.findings.empty();
}
