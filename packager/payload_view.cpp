#include "packager/payload_view.h"

#include <memory>
#include <system_error>

#include "packager/file_io.h"
#include "packager/installer_file.h"

namespace fs = std::filesystem;

namespace {

// The view, kept together with what it looks at.
template <typename Payload>
PayloadView OwningView(Payload payload) {
  const auto kept = std::make_shared<const Payload>(std::move(payload));
  PayloadView view = ViewOf(*kept);
  view.read = [kept, read = view.read](std::size_t index) { return read(index); };
  return view;
}

}  // namespace

PayloadView ViewOf(const PayloadPlan& plan) {
  return {TableEntries(plan), [&plan](std::size_t index) {
            const PlannedEntry& entry = plan.entries[index];
            if (entry.size == 0) return std::string();
            return ReadWholeFile(plan.tree.root / entry.source, entry.name, entry.size);
          }};
}

PayloadView ViewOf(const PackedPayload& packed) {
  return {packed.table.entries,
          [&packed](std::size_t index) { return std::string(BytesOf(packed, index)); }};
}

PayloadView OpenPayload(const fs::path& source) {
  if (!IsInstaller(source)) return OwningView(PlanPayload(source));
  PackedPayload packed = ReadInstaller(source);
  CheckPackedPayload(packed);
  return OwningView(std::move(packed));
}

bool IsInstaller(const fs::path& path) {
  std::error_code ignored;
  return fs::is_regular_file(path, ignored);
}
