// Runs under Wine: without_administrators PROGRAM runs it with a token in which the administrators'
// group is good for denying alone, as an ordinary user's is, and ends with its status.
#include <windows.h>

namespace {

HANDLE TokenWithoutAdministrators() {
  SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
  PSID administrators = nullptr;
  HANDLE own = nullptr;
  HANDLE restricted = nullptr;
  if (!AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS,
                                0, 0, 0, 0, 0, 0, &administrators) ||
      !OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own)) {
    return nullptr;
  }
  SID_AND_ATTRIBUTES disabled = {administrators, 0};
  if (!CreateRestrictedToken(own, 0, 1, &disabled, 0, nullptr, 0, nullptr, &restricted)) {
    return nullptr;
  }
  return restricted;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) return 2;
  STARTUPINFOA start = {};
  start.cb = sizeof start;
  PROCESS_INFORMATION process = {};
  HANDLE token = TokenWithoutAdministrators();
  if (token == nullptr || !CreateProcessAsUserA(token, argv[1], nullptr, nullptr, nullptr, FALSE, 0,
                                                nullptr, nullptr, &start, &process)) {
    return 3;
  }
  WaitForSingleObject(process.hProcess, INFINITE);
  DWORD status = 0;
  GetExitCodeProcess(process.hProcess, &status);
  return static_cast<int>(status);
}
