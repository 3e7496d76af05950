#include "driver/search_order.h"

#include <cstdint>

#include "driver/driver_platform.h"

namespace {

constexpr char kPolicyKey[] = "SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\DriverSearching";
constexpr char kPolicyValue[] = "SearchOrderConfig";
constexpr std::uint32_t kStrictOrder = 1;
constexpr std::uint32_t kRelaxedOrder = 2;

// The program's own view of the registry, then each of the two by name.
RegistryKey* OpenPolicyKey() {
  RegistryKey* key = OpenMachineKey(kPolicyKey, kQueryAndSetValue);
  if (key == nullptr) key = OpenMachineKey(kPolicyKey, kQueryAndSetValue | kRegistryView64);
  if (key == nullptr) key = OpenMachineKey(kPolicyKey, kQueryAndSetValue | kRegistryView32);
  return key;
}

int RelaxOrder(RegistryKey* key) {
  std::uint32_t type = 0;
  std::uint32_t size = 0;
  if (!QueryRegistryValue(key, kPolicyValue, &type, nullptr, &size)) return 0;
  std::uint32_t order = 0;
  if (type != kTypeDword || size != sizeof order) return 0;
  if (!QueryRegistryValue(key, kPolicyValue, &type, &order, &size)) return 0;
  if (order != kStrictOrder) return 1;
  order = kRelaxedOrder;
  return SetRegistryValue(key, kPolicyValue, kTypeDword, &order, sizeof order) ? 1 : 0;
}

}  // namespace

int relax_driver_search_order() {
  RegistryKey* key = OpenPolicyKey();
  if (key == nullptr) return 0;
  const int result = RelaxOrder(key);
  CloseRegistryKey(key);
  return result;
}
