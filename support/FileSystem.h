// The one door to the file system. Logic paths use the backslash as the separator, as on Windows; these
// functions turn them into native paths and give the logic the file system it was written for: names match
// ignoring case, a find with a pattern behaves like the host's, listings come in one stable order, and
// rewrites go through a temporary file. A logic path with a drive letter or a UNC prefix never exists here.
#pragma once

#include "support/CArray.h"
#include "support/CString.h"

#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

namespace QxFs {

struct Entry {
    CString name;
    bool isFolder = false;
};

// Native form of a logic path whose every component exists, matched ignoring case (the exact name first,
// else the first match in listing order); nullopt if it does not exist.
QX_API std::optional<std::string> Resolve(const CString& logicPath);
// Native path for a file that may not exist yet: the existing leading folders are matched ignoring case,
// the rest is taken as written. nullopt for drive-letter and UNC paths.
QX_API std::optional<std::string> NativeTarget(const CString& logicPath);
// A path given by a person (command line, environment): made absolute, slashes turned into backslashes.
QX_API CString FromNative(const std::string& nativePath);
// A logic path in the machine's own form (slashes), for what a person or a tool reads; the logic keeps its
// backslashes.
QX_API CString ToNativeText(const CString& logicPath);
QX_API bool HasDriveOrUncPrefix(const CString& logicPath);

// The host's find: the last component may hold * and ?; "*.*" matches every name, with or without a dot;
// "." and ".." come first when the pattern matches them; the rest is sorted by upper-case UTF-16 code units.
QX_API std::vector<Entry> Find(const CString& logicPattern);
// Sub-folders and files of a folder in listing order, without "." and "..".
QX_API std::vector<Entry> List(const CString& logicFolder);

QX_API bool Exists(const CString& logicPath);
QX_API bool IsFolder(const CString& logicPath);

QX_API bool ReadBytes(const CString& logicPath, std::string& bytes);
// Writes through a temporary file in the target's folder renamed over the target, keeping its permissions.
// A new file gets `newFileMode` (before the umask for the default, exactly as given otherwise). What an
// in-place write would refuse is refused, judged by the mode bits even for root: a target without write
// permission for this process's class of user, a new file in a folder without it. In a folder that may not
// be written, a writable file is rewritten in place. Temporary files that a killed writer left in the
// folder are removed; listings never show them.
QX_API bool WriteAtomic(const CString& logicPath, std::string_view bytes, std::optional<mode_t> newFileMode = std::nullopt);
// A rewrite in place keeps the file's bytes in the install's Temp\ until it has finished. At a start, each
// copy whose writer no longer runs puts its bytes back over its target unless the target already holds what
// the write was to give; the native paths of the files put back.
QX_API std::vector<CString> RestoreUnfinishedInPlaceWrites();
// The same for a file that must stay private: owner-only mode on every write, not only the first.
QX_API bool WritePrivate(const CString& logicPath, std::string_view bytes);

// Durable writes made together. While a batch stands on this thread, a write by WriteAtomic or
// WritePrivate that goes through a temporary file writes only the temporary; Commit makes all of them
// durable, then renames each over its target in the order written. One flush of many files costs about
// what one costs, where a flush per file costs each in series. A crash before a file's rename leaves that
// file as it was, never half written. A write that cannot go through a temporary (an in-place rewrite) is
// done at once. A batch made while another stands leaves everything to the outer one; a batch that ends
// without Commit commits, so that no write is lost on an early way out. Until the commit, readers see the
// files as they were.
class QX_API DurableWriteBatch {
public:
    DurableWriteBatch();
    ~DurableWriteBatch();
    DurableWriteBatch(const DurableWriteBatch&) = delete;
    DurableWriteBatch& operator=(const DurableWriteBatch&) = delete;

    // False when a file could not be made durable or renamed; that file stays as it was.
    bool Commit();

    // For the writer: takes the temporary of a write, to be renamed over `target` at the commit.
    void Defer(std::string temporary, std::string target);
    // The batch in force on this thread, or null.
    static DurableWriteBatch* Active();

private:
    struct Pending {
        std::string temporary;
        std::string target;
    };
    bool m_inForce = false;
    std::vector<Pending> m_pending;
};

// One level, like _wmkdir: the parent must exist. True if the folder exists afterwards.
QX_API bool MakeFolder(const CString& logicPath);
// With all missing parents.
QX_API bool MakeFolders(const CString& logicPath);
QX_API bool CopyFile(const CString& from, const CString& to, bool overwrite);
QX_API bool DeleteFile(const CString& logicPath);
QX_API bool Rename(const CString& from, const CString& to);

// Case folding of names at this boundary: wider than the ASCII folding of the logic.
QX_API char16_t FoldNameChar(char16_t ch);
QX_API bool NamesEqual(const CString& a, const CString& b);

} // namespace QxFs
