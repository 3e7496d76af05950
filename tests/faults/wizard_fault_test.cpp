// The wizard's install in process, with one file operation after the other failing: what the page
// says, what stands in the folder, and the user's way back to a complete install.
#include <gtest/gtest.h>

#include <FL/Fl_Box.H>
#include <FL/Fl_Button.H>
#include <FL/Fl_Wizard.H>

#include <filesystem>
#include <optional>
#include <string>

#include "driver/driver_page.h"
#include "engine/install_error.h"
#include "store/host_selection.h"
#include "tests/faults/fault_host.h"
#include "tests/faults/fault_run.h"
#include "tests/faults/install_trace.h"
#include "tests/support/harden.h"
#include "tests/wizard/wizard_test.h"
#include "wizard/install_page.h"
#include "wizard/install_pump.h"
#include "wizard/wizard_pages.h"

namespace fs = std::filesystem;

namespace {

constexpr char kHost[] = "Downloads/arduino-1.8.19";
constexpr char kLibraries[] = "hardware/quirlo/avr/libraries/";
constexpr char kOldPreferences[] =
    "editor.font=Monospaced\nboard=uno\ntarget_package=arduino\nlast=1\n";
constexpr char kNewPreferences[] =
    "target_platform=avr\r\neditor.font=Monospaced\nboard=quirlo31\r\n"
    "target_package=quirlo\r\nlast=1\n";

std::string Advice(const std::string& words, bool hint) {
  std::string advice =
      words +
      "\n\nYou may need to run this installer with administrator access to install all files.  "
      "Please right click on this program and select \"Run as Administrator\"\n"
      "\nPlease make sure you do not have a copy of Arduino running, as this can block writing to "
      "certain files.\n";
  if (hint) {
    advice +=
        "\nAnti-virus software can sometimes falsely interfere with writing this type of file.  If "
        "you are running an anti-virus program, you may need to temporarily disable it.\n";
  }
  return advice;
}

// Whether `part` is `whole` but for bytes that are missing.
bool OnlyLacks(const std::string& part, const std::string& whole) {
  std::size_t position = 0;
  for (const char byte : part) {
    position = whole.find(byte, position);
    if (position == std::string::npos) return false;
    ++position;
  }
  return true;
}

class HardenWizardFaults : public WizardTest {
 protected:
  HardenWizardFaults() {
    Machine.administrator = false;
    Reset();
    before_ = ReadInstall(Host());
    Show();
    GoToPage(4);
    EXPECT_EQ(HostVersionNumber, 10819);
    Run({});  // whatever is loaded at the first drawing is loaded now
    GoBackToTheInstallPage();
    Reset();
    const FaultReport report = Run({});
    EXPECT_EQ(CurrentPage(), 5);
    EXPECT_EQ(report.open, std::vector<std::string>());
    complete_ = ReadInstall(Host());
    EXPECT_EQ(ReadFile(Preferences()), kNewPreferences);
    EXPECT_FALSE(fs::exists(Host() + "/" + kLibraries + "openGLCD"));
    trace_.emplace(report.operations, kHost, Host() + "/", false);
  }

  long operations() const { return static_cast<long>(trace_->size()); }
  const InstallTrace& trace() const { return *trace_; }

  // What differs from what must be, when operation n fails with that error; empty when nothing.
  std::string Disturb(long n, const NamedError& error) {
    differences_.clear();
    GoBackToTheInstallPage();
    Reset();
    earlier_words_ = InstallErrorText();
    const FaultReport report = Run({.at = n, .error = error.number});
    if (report.met != n || !IsSame(report.operations[static_cast<std::size_t>(n) - 1], n)) {
      Differ("the operation was not met");
    }
    const Outcome outcome = trace_->FailureAt(n);
    ExpectPage(outcome, n);
    ExpectHandles(n, report);
    ExpectFiles(outcome, n);
    ExpectPreferences(outcome, n);
    ExpectRetry(outcome, n);
    return differences_;
  }

 private:
  std::string Host() const { return Home(kHost); }
  std::string Preferences() const { return Home(".local/share/Arduino15/preferences.txt"); }

  void Reset() const {
    fs::remove_all(Host());
    MakeArduino1819(Host());
    WriteFile(Host() + "/lib/quirloduino.txt", "1.59");
    WriteFile(Host() + "/hardware/quirlo/avr/boards.txt", "older boards");
    WriteFile(Host() + "/hardware/quirlo/avr/cores/quirlo4/libc.c", "retired");
    for (const char* old : {"openGLCD/fonts/Arial14.h", "SD/utility/Sd2Card.cpp", "SD/SD.cpp"}) {
      WriteFile(Host() + "/" + kLibraries + old, "of an older package");
    }
    WriteFile(Preferences(), kOldPreferences);
  }

  // To the library page, and with its Next to the install page, which that arms anew.
  static void GoBackToTheInstallPage() {
    Wizard->value(Pages()[3]);
    Click(Labelled(Pages()[3], "Next"));
  }

  FaultReport Run(FaultPlan plan) const {
    plan.root = home_.path();
    ScopedFaultLayer layer(plan);
    Click(InstallButton);
    WaitUntil([] { return Fl::has_idle(InstallPump) == 0; });
    FaultReport report = layer.Report();
    WaitUntil([] {
      return Fl::has_timeout(InstallSucceeded) == 0 && Fl::has_timeout(InstallFailed) == 0;
    });
    return report;
  }

  void Differ(const std::string& what) { differences_ += what + "\n"; }
  void Expect(const std::string& difference) {
    if (!difference.empty()) Differ(difference);
  }

  bool IsSame(const Operation& operation, long n) const {
    return operation.name == trace_->At(n).name && operation.path == trace_->At(n).path;
  }

  void ExpectPage(const Outcome& outcome, long n) {
    const bool fails = outcome.end == Outcome::End::kFailed;
    if (CurrentPage() != (fails ? 4 : 5)) Differ("page " + std::to_string(CurrentPage()));
    if (!fails) return;
    if (LabelOf(InstallStatusLabel) != "ERROR !!!") Differ(LabelOf(InstallStatusLabel));
    // This failure sets no words, so those of the last one are shown, even of an earlier run.
    const bool is_silent = trace_->RoleAt(n) == Role::kMadeLevel;
    const std::string advice =
        Advice(is_silent ? earlier_words_ : outcome.words, trace_->HintAt(n));
    if (LabelOf(InstallDetailBox) != advice) {
      Differ("advised:\n" + LabelOf(InstallDetailBox) + "and not:\n" + advice);
    }
    if (InstallButton->active() != 0 || InstallBackButton->active() == 0 ||
        InstallCancelButton->active() == 0) {
      Differ("the buttons are not those of a failure");
    }
  }

  // The archive library loses a descriptor for which it gets no stream.
  void ExpectHandles(long n, const FaultReport& report) {
    std::vector<std::string> open;
    const Operation& met = trace_->At(n);
    if (met.name == "fdopen" && !met.path.ends_with(".XXXXXX")) open.push_back(met.path);
    if (report.open != open) {
      Differ("left open: " + (report.open.empty() ? "nothing" : report.open.front()));
    }
    for (const std::string& change : report.outside) Differ("outside the home: " + change);
  }

  void ExpectFiles(const Outcome& outcome, long n) {
    Files after = ReadInstall(Host());
    const bool leaves = trace_->RoleAt(n) == Role::kLeftover;
    if (TakeTemporaries(&after).size() != (leaves ? 1U : 0U)) Differ("temporary files");
    if (outcome.end == Outcome::End::kFailed) {
      Expect(trace_->CompareEnd(n, before_, complete_, after));
      return;
    }
    Files expected = complete_;
    const std::string path = trace_->At(n).path.substr(sizeof kHost - 1);
    if (trace_->RoleAt(n) == Role::kFindRetired && !path.empty() &&
        before_.contains(path.substr(1))) {
      expected[path.substr(1)] = before_.at(path.substr(1));
    }
    if (trace_->RoleAt(n) == Role::kLastSteps) {  // an old library may stay, in part or whole
      for (const auto& [file, content] : before_) {
        if (!complete_.contains(file) && after.contains(file)) expected[file] = content;
      }
    }
    Expect(Difference(expected, after));
  }

  // They are touched behind the last entry alone. What couldn't be written to them is lost, and
  // nobody is told.
  void ExpectPreferences(const Outcome& outcome, long n) {
    const std::string text = ReadFile(Preferences());
    const bool is_old = text == kOldPreferences;
    if (outcome.end == Outcome::End::kFailed) {
      if (!is_old) Differ("the preferences were touched");
      return;
    }
    if (text == kNewPreferences) return;
    if (trace_->RoleAt(n) != Role::kLastSteps) Differ("the preferences are: " + text);
    const std::string name = trace_->At(n).name;
    const bool writes = name == "fputs" || name == "fwrite";
    if (writes ? !OnlyLacks(text, kNewPreferences) : !is_old) {
      Differ("the preferences are: " + text);
    }
  }

  void ExpectRetry(const Outcome& outcome, long n) {
    if (outcome.end == Outcome::End::kFailed) {
      Click(InstallBackButton);
      if (CurrentPage() != 3) Differ("Back leads elsewhere");
      Click(Labelled(Pages()[3], "Next"));
    } else {
      GoBackToTheInstallPage();
    }
    Run({});
    if (CurrentPage() != 5) Differ("the second run fails: " + LabelOf(InstallDetailBox));
    Files after = ReadInstall(Host());
    TakeTemporaries(&after);
    const std::string difference = Difference(complete_, after);
    if (!difference.empty()) Differ("after the second run, " + difference);
    const std::string text = ReadFile(Preferences());
    if (trace_->RoleAt(n) == Role::kLastSteps ? !SelectsOurBoard(text) : text != kNewPreferences) {
      Differ("after the second run the preferences are: " + text);
    }
  }

  static bool SelectsOurBoard(const std::string& preferences) {
    for (const char* line :
         {"board=quirlo31\r\n", "target_package=quirlo\r\n", "target_platform=avr\r\n"}) {
      if (preferences.find(line) == std::string::npos) return false;
    }
    return true;
  }

  Files before_;
  Files complete_;
  std::optional<InstallTrace> trace_;
  std::string earlier_words_;
  std::string differences_;
};

TEST_F(HardenWizardFaults, EachOperationEndsOnItsPageAndBackLeadsToACompleteInstall) {
  const std::vector<long> all = HardenFully() ? trace().All() : trace().Representatives();
  const std::size_t errors = HardenFully() ? kErrors.size() : 1;
  long differences = 0;
  long disturbed = 0;
  for (const long n : all) {
    for (std::size_t i = 0; i < errors; ++i) {
      const NamedError& error = kErrors[(static_cast<std::size_t>(n) + i) % kErrors.size()];
      const std::string difference = Disturb(n, error);
      ++disturbed;
      if (difference.empty()) continue;
      ++differences;
      ADD_FAILURE() << "operation " << n << ", " << trace().At(n).name << " " << trace().At(n).path
                    << ", fails with " << error.name << ":\n"
                    << difference;
    }
    ASSERT_LT(differences, 10) << "enough of it";
  }
  HardenReport("faults: wizard's install, " + HardenNumber(static_cast<long>(all.size())) + " of " +
               HardenNumber(operations()) + " operations, " + std::to_string(errors) +
               (errors == 1 ? " error" : " errors") + " each, " + HardenNumber(2 * disturbed) +
               " runs, " + HardenNumber(differences) + " differences");
}

}  // namespace
