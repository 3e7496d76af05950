#include <windows.h>

#include "platform/administrator.h"

namespace {

// A private pair of access bits for a private descriptor. They are no file rights: the check asks
// only whether the token holds the group to which the descriptor grants them.
constexpr DWORD kReadAccess = 1;
constexpr DWORD kWriteAccess = 2;

constexpr DWORD kTokenAccess = TOKEN_DUPLICATE | TOKEN_QUERY;

// Everything that the test acquires. Each member is null until its step succeeded.
struct Resources {
  HANDLE token;      // of the thread, or of the process
  HANDLE duplicate;  // the same as an impersonation token, the only kind AccessCheck takes
  PSID administrators;
  PSECURITY_DESCRIPTOR descriptor;
  PACL list;

  Resources()
      : token(nullptr),
        duplicate(nullptr),
        administrators(nullptr),
        descriptor(nullptr),
        list(nullptr) {}
  Resources(const Resources&) = delete;
  Resources& operator=(const Resources&) = delete;

  // The descriptor points at the list and the SID, but nothing reads it any more.
  ~Resources() {
    if (list != nullptr) LocalFree(list);
    if (descriptor != nullptr) LocalFree(descriptor);
    if (administrators != nullptr) FreeSid(administrators);
    if (duplicate != nullptr) CloseHandle(duplicate);
    if (token != nullptr) CloseHandle(token);
  }
};

// The thread's own token where it impersonates somebody, otherwise the process's.
bool OpenToken(Resources* owned) {
  if (OpenThreadToken(GetCurrentThread(), kTokenAccess, TRUE, &owned->token)) return true;
  const DWORD error = GetLastError();
  owned->token = nullptr;
  if (error != ERROR_NO_TOKEN) return false;
  if (OpenProcessToken(GetCurrentProcess(), kTokenAccess, &owned->token)) return true;
  owned->token = nullptr;
  return false;
}

bool DuplicateForCheck(Resources* owned) {
  if (DuplicateToken(owned->token, SecurityImpersonation, &owned->duplicate)) return true;
  owned->duplicate = nullptr;
  return false;
}

bool AllocateAdministrators(Resources* owned) {
  SID_IDENTIFIER_AUTHORITY authority = {SECURITY_NT_AUTHORITY};
  if (AllocateAndInitializeSid(&authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS,
                               0, 0, 0, 0, 0, 0, &owned->administrators)) {
    return true;
  }
  owned->administrators = nullptr;
  return false;
}

// A descriptor that grants both bits to the administrators and nothing to anybody else.
bool BuildDescriptor(Resources* owned) {
  owned->descriptor = LocalAlloc(LPTR, SECURITY_DESCRIPTOR_MIN_LENGTH);
  if (owned->descriptor == nullptr) return false;
  if (!InitializeSecurityDescriptor(owned->descriptor, SECURITY_DESCRIPTOR_REVISION)) return false;

  // The list's header (8 bytes) and its one entry: 8 bytes before the SID.
  const DWORD list_size = GetLengthSid(owned->administrators) + 16;
  owned->list = static_cast<PACL>(LocalAlloc(LPTR, list_size));
  if (owned->list == nullptr) return false;
  if (!InitializeAcl(owned->list, list_size, ACL_REVISION)) return false;
  if (!AddAccessAllowedAce(owned->list, ACL_REVISION, kReadAccess | kWriteAccess,
                           owned->administrators)) {
    return false;
  }

  // AccessCheck refuses a descriptor without group and owner.
  return SetSecurityDescriptorDacl(owned->descriptor, TRUE, owned->list, FALSE) &&
         SetSecurityDescriptorGroup(owned->descriptor, owned->administrators, FALSE) &&
         SetSecurityDescriptorOwner(owned->descriptor, owned->administrators, FALSE) &&
         IsValidSecurityDescriptor(owned->descriptor);
}

bool GrantsAccess(const Resources& owned) {
  GENERIC_MAPPING mapping = {kReadAccess, kWriteAccess, 0, kReadAccess | kWriteAccess};
  PRIVILEGE_SET privileges = {};
  DWORD privileges_length = sizeof privileges;
  DWORD granted_access = 0;
  BOOL status = FALSE;
  return AccessCheck(owned.descriptor, owned.duplicate, kReadAccess, &mapping, &privileges,
                     &privileges_length, &granted_access, &status) &&
         status != FALSE;
}

// The values that the test is known to work with.
static_assert(kTokenAccess == 10 && SecurityImpersonation == 2);
static_assert(SECURITY_BUILTIN_DOMAIN_RID == 32 && DOMAIN_ALIAS_RID_ADMINS == 544);
static_assert(SECURITY_DESCRIPTOR_REVISION == 1 && ACL_REVISION == 2);
static_assert(sizeof(PRIVILEGE_SET) == 20);
#ifndef _WIN64
static_assert(SECURITY_DESCRIPTOR_MIN_LENGTH == 20);
#endif

}  // namespace

int is_user_admin() {
  Resources owned;
  if (!OpenToken(&owned)) return 0;
  if (!DuplicateForCheck(&owned)) return 0;
  if (!AllocateAdministrators(&owned)) return 0;
  if (!BuildDescriptor(&owned)) return 0;
  return GrantsAccess(owned) ? 1 : 0;
}
