// The profile store. Nothing is kept yet.
#include "profiles/profile_store.h"

void LoadProfiles(HWND, LPCSTR) {}
