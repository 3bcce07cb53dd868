// Making, judging, putting back and dropping the copy of an INI file.
#include "settings/ini_copy.h"

#include <cstring>

#define COPY_SUFFIX ".lvkeep" // no user gives this name to a copy of his own

constexpr DWORD LONGEST_FILE = 1024 * 1024; // a longer one is written without a copy
constexpr int OPEN_TRIES = 20;
constexpr DWORD OPEN_PAUSE_MS = 25;
constexpr ULONGLONG LONGEST_WRITE = 60 * 10000000ULL; // of a minute, in the units of a FILETIME

// Stands behind the content of a copy and makes it one: a program that ends while it writes its copy leaves none.
struct COPYSEAL {
    char szMark[8];
    DWORD cbContent;
    char szSection[64]; // the section that is being written
};
#define SEAL_MARK "lvkeep1"

// A file in memory, on the heap, with room for a seal behind it.
struct FILETEXT {
    char *lpBytes;
    DWORD cbBytes;
    FILETIME written;
};

void FlushIniFile(LPCSTR lpszPath)
{
    WritePrivateProfileStringA(nullptr, nullptr, nullptr, lpszPath);
}

// ---- Files as a whole ---------------------------------------------------------------------------------------------

// The caller frees the bytes when the result is true.
static bool ReadAll(HANDLE hFile, FILETEXT *text)
{
    DWORD read = 0;
    text->cbBytes = GetFileSize(hFile, nullptr);
    if (text->cbBytes > LONGEST_FILE || !GetFileTime(hFile, nullptr, nullptr, &text->written))
        return false;
    text->lpBytes = static_cast<char *>(HeapAlloc(GetProcessHeap(), 0, text->cbBytes + sizeof(COPYSEAL)));
    if (!text->lpBytes)
        return false;
    SetFilePointer(hFile, 0, nullptr, FILE_BEGIN);
    if (ReadFile(hFile, text->lpBytes, text->cbBytes, &read, nullptr) && read == text->cbBytes)
        return true;
    HeapFree(GetProcessHeap(), 0, text->lpBytes);
    return false;
}

static bool WriteAll(HANDLE hFile, const char *bytes, DWORD size)
{
    DWORD written = 0;
    SetFilePointer(hFile, 0, nullptr, FILE_BEGIN);
    return WriteFile(hFile, bytes, size, &written, nullptr) && written == size && SetEndOfFile(hFile);
}

static HANDLE OpenFileAt(LPCSTR path, DWORD access)
{
    return CreateFileA(path, access, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

enum class READING { Done, Missing, Failed };

static READING ReadIniFile(LPCSTR path, FILETEXT *text)
{
    const HANDLE hFile = OpenFileAt(path, GENERIC_READ);
    if (hFile == INVALID_HANDLE_VALUE)
        return GetLastError() == ERROR_FILE_NOT_FOUND ? READING::Missing : READING::Failed;
    const bool done = ReadAll(hFile, text);
    CloseHandle(hFile);
    return done ? READING::Done : READING::Failed;
}

// ---- Whether a file is whole --------------------------------------------------------------------------------------

// A place in a text, and what was met of one section on the way there.
struct INIWALK {
    const char *lpPosition;
    const char *lpEnd;
    LPCSTR lpszSection;
    bool bInside;
    int nLines; // of the section, its name included
};

struct INILINE {
    const char *lpBegin;
    const char *lpEnd;
};

static bool IsBlank(char c)
{
    return static_cast<unsigned char>(c) <= ' ';
}

// The next line that holds anything. False at the end.
static bool NextLine(INIWALK *walk, INILINE *line)
{
    const char *p = walk->lpPosition;
    while (p < walk->lpEnd && IsBlank(*p))
        ++p;
    line->lpBegin = p;
    while (p < walk->lpEnd && *p != '\r' && *p != '\n')
        ++p;
    line->lpEnd = p;
    walk->lpPosition = p;
    return line->lpBegin < p;
}

static bool IsNameOf(const INILINE &line, LPCSTR section)
{
    const size_t length = strlen(section);
    return static_cast<size_t>(line.lpEnd - line.lpBegin) >= length + 2 && line.lpBegin[length + 1] == ']' &&
           _strnicmp(line.lpBegin + 1, section, length) == 0;
}

// The next line outside of the section.
static bool NextLineOutside(INIWALK *walk, INILINE *line)
{
    while (NextLine(walk, line)) {
        if (*line->lpBegin == '[')
            walk->bInside = IsNameOf(*line, walk->lpszSection);
        if (!walk->bInside)
            return true;
        ++walk->nLines;
    }
    return false;
}

// But for blanks: the system may leave out those around a value when it writes a line anew.
static bool IsSameLine(const INILINE &a, const INILINE &b)
{
    const char *p = a.lpBegin;
    const char *q = b.lpBegin;
    for (;;) {
        while (p < a.lpEnd && IsBlank(*p))
            ++p;
        while (q < b.lpEnd && IsBlank(*q))
            ++q;
        if (p == a.lpEnd || q == b.lpEnd)
            return p == a.lpEnd && q == b.lpEnd;
        if (*p++ != *q++)
            return false;
    }
}

bool IsIniWhole(const char *lpFile, DWORD cbFile, const char *lpCopy, DWORD cbCopy, LPCSTR lpszSection)
{
    INIWALK file = {lpFile, lpFile + cbFile, lpszSection, false, 0};
    INIWALK copy = {lpCopy, lpCopy + cbCopy, lpszSection, false, 0};
    INILINE fileLine, copyLine;
    bool more;
    do {
        more = NextLineOutside(&copy, &copyLine);
        if (NextLineOutside(&file, &fileLine) != more || (more && !IsSameLine(fileLine, copyLine)))
            return false;
    } while (more);
    return file.nLines >= copy.nLines || file.nLines == 1;
}

// ---- The copy -----------------------------------------------------------------------------------------------------

static void FormCopyPath(char (&copyPath)[MAX_PATH + sizeof COPY_SUFFIX], LPCSTR path)
{
    lstrcpynA(copyPath, path, MAX_PATH);
    lstrcatA(copyPath, COPY_SUFFIX);
}

// Shared with nobody: who has it is the one who writes.
static HANDLE OpenCopy(LPCSTR path, DWORD disposition)
{
    char copyPath[MAX_PATH + sizeof COPY_SUFFIX];
    FormCopyPath(copyPath, path);
    for (int tries = 1;; ++tries) {
        const HANDLE hCopy = CreateFileA(copyPath, GENERIC_READ | GENERIC_WRITE, 0, nullptr, disposition,
                                         FILE_ATTRIBUTE_NORMAL, nullptr);
        if (hCopy != INVALID_HANDLE_VALUE || GetLastError() != ERROR_SHARING_VIOLATION || tries == OPEN_TRIES)
            return hCopy;
        Sleep(OPEN_PAUSE_MS);
    }
}

// Emptied first, through the handle that nobody can take away: an empty copy puts nothing back, should it stay.
static void DropCopy(HANDLE hCopy, LPCSTR path)
{
    char copyPath[MAX_PATH + sizeof COPY_SUFFIX];
    FormCopyPath(copyPath, path);
    SetFilePointer(hCopy, 0, nullptr, FILE_BEGIN);
    SetEndOfFile(hCopy);
    CloseHandle(hCopy);
    DeleteFileA(copyPath);
}

static bool SealCopy(HANDLE hCopy, const FILETEXT &text, LPCSTR section)
{
    COPYSEAL seal = {SEAL_MARK, text.cbBytes, ""};
    lstrcpynA(seal.szSection, section, sizeof seal.szSection);
    memcpy(text.lpBytes + text.cbBytes, &seal, sizeof seal);
    return WriteAll(hCopy, text.lpBytes, text.cbBytes + static_cast<DWORD>(sizeof seal));
}

// Takes the seal off a copy. False for one that was not finished, and for an empty one.
static bool TakeSealOff(FILETEXT *copy, COPYSEAL *seal)
{
    if (copy->cbBytes < sizeof *seal)
        return false;
    copy->cbBytes -= static_cast<DWORD>(sizeof *seal);
    memcpy(seal, copy->lpBytes + copy->cbBytes, sizeof *seal);
    seal->szSection[sizeof seal->szSection - 1] = '\0';
    return memcmp(seal->szMark, SEAL_MARK, sizeof seal->szMark) == 0 && seal->cbContent == copy->cbBytes;
}

static ULONGLONG TimeValue(const FILETIME &time)
{
    return static_cast<ULONGLONG>(time.dwHighDateTime) << 32 | time.dwLowDateTime;
}

static bool IsDamaged(const FILETEXT &file, const FILETEXT &copy, LPCSTR section)
{
    return TimeValue(file.written) <= TimeValue(copy.written) + LONGEST_WRITE &&
           !IsIniWhole(file.lpBytes, file.cbBytes, copy.lpBytes, copy.cbBytes, section);
}

static bool PutBack(LPCSTR path, const FILETEXT &copy)
{
    const HANDLE hFile = OpenFileAt(path, GENERIC_WRITE);
    if (hFile == INVALID_HANDLE_VALUE)
        return false;
    const bool done = WriteAll(hFile, copy.lpBytes, copy.cbBytes);
    CloseHandle(hFile);
    FlushIniFile(path);
    return done;
}

// Result: false when the copy is still needed, as the file cannot be read or mended now.
static bool MendFile(HANDLE hCopy, LPCSTR path, const FILETEXT &copy, LPCSTR section)
{
    FILETEXT file;
    switch (ReadIniFile(path, &file)) {
    case READING::Missing: // no write takes a file away
        return true;
    case READING::Failed:
        return false;
    case READING::Done:
        break;
    }
    const bool damaged = IsDamaged(file, copy, section);
    HeapFree(GetProcessHeap(), 0, file.lpBytes);
    if (!damaged)
        return true;
    // Sealed anew first: should this end in the middle, too, the copy must not look like that of an old write.
    return SealCopy(hCopy, copy, section) && PutBack(path, copy);
}

static bool MendFromCopy(HANDLE hCopy, LPCSTR path)
{
    FILETEXT copy;
    COPYSEAL seal;
    if (!ReadAll(hCopy, &copy))
        return false;
    const bool served = !TakeSealOff(&copy, &seal) || MendFile(hCopy, path, copy, seal.szSection);
    HeapFree(GetProcessHeap(), 0, copy.lpBytes);
    return served;
}

static void DropServedCopy(HANDLE hCopy, LPCSTR path)
{
    if (MendFromCopy(hCopy, path))
        DropCopy(hCopy, path);
    else
        CloseHandle(hCopy);
}

void RepairIniFile(LPCSTR lpszPath)
{
    const HANDLE hCopy = lpszPath[0] ? OpenCopy(lpszPath, OPEN_EXISTING) : INVALID_HANDLE_VALUE;
    if (hCopy != INVALID_HANDLE_VALUE)
        DropServedCopy(hCopy, lpszPath);
}

// False when the file has a content that cannot be kept.
static bool FillCopy(HANDLE hCopy, LPCSTR path, LPCSTR section)
{
    FILETEXT text;
    const READING reading = ReadIniFile(path, &text);
    if (reading != READING::Done)
        return reading == READING::Missing;
    const bool sealed = SealCopy(hCopy, text, section);
    HeapFree(GetProcessHeap(), 0, text.lpBytes);
    return sealed;
}

HANDLE TakeIniCopy(LPCSTR lpszPath, LPCSTR lpszSection)
{
    const HANDLE hCopy = OpenCopy(lpszPath, OPEN_ALWAYS);
    if (hCopy == INVALID_HANDLE_VALUE)
        return INVALID_HANDLE_VALUE;
    const bool leftOver = GetLastError() == ERROR_ALREADY_EXISTS;
    if (leftOver && !MendFromCopy(hCopy, lpszPath)) {
        CloseHandle(hCopy);
        return INVALID_HANDLE_VALUE;
    }
    if (FillCopy(hCopy, lpszPath, lpszSection))
        return hCopy;
    DropCopy(hCopy, lpszPath);
    return INVALID_HANDLE_VALUE;
}

void EndIniCopy(HANDLE hCopy, LPCSTR lpszPath, bool bWritten)
{
    if (hCopy == INVALID_HANDLE_VALUE)
        return;
    if (bWritten)
        DropCopy(hCopy, lpszPath);
    else
        DropServedCopy(hCopy, lpszPath);
}
