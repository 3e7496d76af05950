#include "packager/place_rules.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <string_view>

#include "packager/entry_names.h"
#include "packager/install_forecast.h"
#include "packager/refusal.h"
#include "store/payload_format.h"

namespace {

std::vector<InstallForecast> ForecastAll(const PayloadView& payload) {
  std::vector<InstallForecast> forecasts;
  for (const std::string& release : ReleasesOf(payload)) forecasts.emplace_back(payload, release);
  return forecasts;
}

template <std::size_t N>
bool IsOneOf(std::string_view name, const char* const (&list)[N]) {
  return std::any_of(std::begin(list), std::end(list),
                     [name](const char* known) { return name == known; });
}

bool IsRootFile(std::string_view name) {
  return std::any_of(std::begin(kRootFiles), std::end(kRootFiles),
                     [name](const RootFile& known) { return name == known.name; });
}

// Of the files below a release's WINDOWS/: what steers the installer, what a bundle has, and the
// older states of an archive's classes that authors keep beside its tree.
bool IsKeptInWindows(std::string_view release_path) {
  const std::string_view name = AfterFirstComponent(release_path);
  const std::string ending = "/" + std::string(release_path);
  if (ending == kCriteriaFileEnding || ending == kLocationsFileEnding) return true;
  if (std::any_of(std::begin(kBundleEndings), std::end(kBundleEndings),
                  [release_path](const char* known) { return release_path.ends_with(known); })) {
    return true;
  }
  if (name.find('/') != std::string_view::npos) return false;
  return std::any_of(std::begin(kArchiveTrees), std::end(kArchiveTrees),
                     [release_path](std::string_view tree) {
                       tree.remove_suffix(1);  // its "/"
                       return release_path.starts_with(std::string(tree) + "-");
                     });
}

bool IsCompanion(std::string_view name) {
  const std::string_view rest = AfterFirstComponent(name);
  return name.starts_with(kLibrariesFolder) && rest.find('/') == std::string_view::npos &&
         (rest.ends_with(kDescriptionEnding) || rest.ends_with(kPictureEnding));
}

// What is carried for the installer itself, or known to be carried for nobody.
bool IsMeantToLandNowhere(std::string_view name) {
  if (IsReleasePrefixed(name)) {
    const std::string_view rest = AfterFirstComponent(name);
    return rest.starts_with(kWindowsFolder) && IsKeptInWindows(rest);
  }
  const bool in_root = name.find('/') == std::string_view::npos;
  const bool is_driver_file =
      in_root && (name.ends_with(kDriverInfEnding) || name.ends_with(kDriverCatalogEnding));
  return is_driver_file || IsOneOf(name, kPictures) || IsRootFile(name) || IsCompanion(name);
}

}  // namespace

void CheckPlaces(const PayloadView& payload) {
  for (const InstallForecast& forecast : ForecastAll(payload)) {
    for (std::size_t i = 0; i < payload.entries.size(); ++i) {
      const std::string place = LandingPath(forecast.At(i));
      if (place.size() <= kLongestPlace) continue;
      throw Refusal(InstalledPath(payload.entries[i].name),
                    "lands at a path of " + std::to_string(place.size()) +
                        " bytes below the host folder, where not more than " +
                        std::to_string(kLongestPlace) + " are whole in every folder");
    }
  }
}

std::vector<Warning> FindHomeless(const PayloadView& payload) {
  const std::vector<InstallForecast> forecasts = ForecastAll(payload);
  std::vector<Warning> warnings;
  for (std::size_t i = 0; i < payload.entries.size(); ++i) {
    const std::string_view name = InstalledPath(payload.entries[i].name);
    if (IsMeantToLandNowhere(name) || !LeftoverPath(name).empty()) continue;
    const bool lands = std::any_of(
        forecasts.begin(), forecasts.end(),
        [i](const InstallForecast& forecast) { return !LandingPath(forecast.At(i)).empty(); });
    if (!lands) warnings.push_back({std::string(name), "lands nowhere, in no release"});
  }
  return warnings;
}
