// Words that one thread writes and another polls. There are no locks over state in the plug-in, so whatever two threads
// touch is one of these: a single word, read and written whole.
#pragma once

#include <windows.h>

#include <atomic>

using SHAREDFLAG = std::atomic<LONG>;
using SHAREDWORD = std::atomic<WORD>;
using SHAREDDWORD = std::atomic<DWORD>;
using SHAREDWND = std::atomic<HWND>;

static_assert(SHAREDFLAG::is_always_lock_free && SHAREDWORD::is_always_lock_free && SHAREDWND::is_always_lock_free);
