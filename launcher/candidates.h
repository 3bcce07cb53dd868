// The launcher's candidates: files that the user may assign to a button. One list for all monitors, in numbered slots
// of the registry, of which any may be empty.
//
// Texts are at most SETTING_TEXT_SIZE bytes, and so are the buffers for them. Kernel thread.
#pragma once

#include <windows.h>

constexpr int CANDIDATE_COUNT = 33;

// The display name and the full path of a slot. False with an empty text for an empty slot.
bool ReadCandidateName(int nSlot, char *lpszName);
bool ReadCandidatePath(int nSlot, char *lpszPath);

// The lowest slot with exactly this name, in the same letters. Result: -1 when there is none.
int FindCandidate(LPCSTR lpszName);

// The lowest empty slot. Result: -1 when all are in use.
int FindFreeCandidate();

void WriteCandidate(int nSlot, LPCSTR lpszName, LPCSTR lpszPath);
void DeleteCandidate(int nSlot);
