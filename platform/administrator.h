// The one question of rights that the program asks: may this process install drivers, and write
// where only administrators may? Looks at the process's identity alone, never at a folder or its
// permissions, and asks the system anew at every call.
#pragma once

// 1 when the process's identity is a member of the built-in Administrators group (elsewhere: when
// it is root), 0 otherwise. A test that can't be made counts as 0, so the worst outcome is the
// advice to run as administrator.
int is_user_admin();
