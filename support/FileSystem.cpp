// The one door to the file system.
#include "support/FileSystem.h"

#include "support/Encoding.h"
#include "support/NativeFiles.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace QxFs {
namespace {

bool hasWildcard(const std::u16string& s) { return s.find_first_of(u"*?") != std::u16string::npos; }

std::vector<std::u16string> splitComponents(const std::u16string& path) {
    std::vector<std::u16string> parts;
    std::u16string current;
    for (char16_t ch : path) {
        if (ch == u'\\' || ch == u'/') {
            if (!current.empty()) parts.push_back(current);
            current.clear();
        } else {
            current += ch;
        }
    }
    if (!current.empty()) parts.push_back(current);
    return parts;
}

bool statPath(const std::string& native, struct stat& st) { return ::stat(native.c_str(), &st) == 0; }

std::vector<std::string> readDirectory(const std::string& native) { return Native::ReadDirectory(native); }

std::string joinNative(const std::string& folder, const std::string& name) { return Native::Join(folder, name); }

std::u16string foldName(const std::u16string& name) {
    std::u16string out = name;
    for (char16_t& ch : out) ch = FoldNameChar(ch);
    return out;
}

// The listing order: upper-case code units, then the names as they stand, so that the order is total.
bool listsBefore(const std::u16string& a, const std::u16string& b) {
    const std::u16string fa = foldName(a), fb = foldName(b);
    return fa != fb ? fa < fb : a < b;
}

// Finds a name in a native folder: the exact name when it is there, else the first of the names equal to it
// ignoring case in listing order, the same on every machine whatever order the directory gives.
std::optional<std::string> matchComponent(const std::string& folder, const std::u16string& component) {
    if (component == u"." || component == u"..") return Utf16ToUtf8(component);
    const std::string exact = Utf16ToUtf8(component);
    struct stat st;
    if (statPath(joinNative(folder, exact), st)) return exact;
    const std::u16string wanted = foldName(component);
    std::optional<std::string> first;
    std::u16string firstWide;
    for (const std::string& name : readDirectory(folder)) {
        const std::u16string wide = Utf8ToUtf16(name);
        if (foldName(wide) != wanted || (first && !listsBefore(wide, firstWide))) continue;
        first = name;
        firstWide = wide;
    }
    return first;
}

struct Walk {
    std::string native;       // the part that was found on disk
    size_t matched = 0;       // how many components were found
    std::vector<std::u16string> components;
};

std::optional<Walk> walk(const CString& logicPath) {
    if (HasDriveOrUncPrefix(logicPath)) return std::nullopt;
    const std::u16string& path = logicPath.str();
    Walk w;
    w.components = splitComponents(path);
    const bool absolute = !path.empty() && (path[0] == u'\\' || path[0] == u'/');
    if (absolute) w.native.push_back('/');
    for (const std::u16string& component : w.components) {
        const auto name = matchComponent(w.native, component);
        if (!name) break;
        w.native = joinNative(w.native, *name);
        ++w.matched;
    }
    return w;
}

// Matches a Windows wildcard pattern against a name, ignoring case.
bool wildcardMatch(std::u16string_view pattern, std::u16string_view name) {
    size_t p = 0, n = 0, starP = std::u16string::npos, starN = 0;
    while (n < name.size()) {
        if (p < pattern.size() && (pattern[p] == u'?' || FoldNameChar(pattern[p]) == FoldNameChar(name[n]))) {
            ++p;
            ++n;
        } else if (p < pattern.size() && pattern[p] == u'*') {
            starP = p++;
            starN = n;
        } else if (starP != std::u16string::npos) {
            p = starP + 1;
            n = ++starN;
        } else {
            return false;
        }
    }
    while (p < pattern.size() && pattern[p] == u'*') ++p;
    return p == pattern.size();
}

bool patternMatches(const std::u16string& pattern, const std::u16string& name) {
    if (pattern == u"*.*" || pattern == u"*") return true;
    return wildcardMatch(pattern, name);
}

} // namespace

char16_t FoldNameChar(char16_t ch) {
    if (ch >= u'a' && ch <= u'z') return char16_t(ch - 32);
    if (ch >= 0xE0 && ch <= 0xFE && ch != 0xF7) return char16_t(ch - 32);            // Latin-1
    if (ch >= 0x3B1 && ch <= 0x3C9 && ch != 0x3C2) return char16_t(ch - 32);         // Greek
    if (ch >= 0x430 && ch <= 0x44F) return char16_t(ch - 32);                        // Cyrillic
    if (ch >= 0x450 && ch <= 0x45F) return char16_t(ch - 80);
    if (ch >= 0xFF41 && ch <= 0xFF5A) return char16_t(ch - 32);                      // full-width Latin
    return ch;
}

bool NamesEqual(const CString& a, const CString& b) { return foldName(a.str()) == foldName(b.str()); }

bool HasDriveOrUncPrefix(const CString& logicPath) {
    const std::u16string& p = logicPath.str();
    if (p.size() >= 2 && p[1] == u':' && ((p[0] >= u'A' && p[0] <= u'Z') || (p[0] >= u'a' && p[0] <= u'z'))) return true;
    return p.size() >= 2 && (p[0] == u'\\' || p[0] == u'/') && (p[1] == u'\\' || p[1] == u'/');
}

std::optional<std::string> Resolve(const CString& logicPath) {
    if (logicPath.IsEmpty()) return std::nullopt;
    const auto w = walk(logicPath);
    if (!w || w->matched != w->components.size()) return std::nullopt;
    if (w->native.empty()) return std::string(".");
    return w->native;
}

std::optional<std::string> NativeTarget(const CString& logicPath) {
    if (logicPath.IsEmpty()) return std::nullopt;
    const auto w = walk(logicPath);
    if (!w) return std::nullopt;
    std::string native = w->native;
    for (size_t i = w->matched; i < w->components.size(); ++i) native = joinNative(native, Utf16ToUtf8(w->components[i]));
    return native.empty() ? std::string(".") : native;
}

CString FromNative(const std::string& nativePath) {
    std::error_code ec;
    std::filesystem::path p = std::filesystem::absolute(nativePath, ec);
    std::string text = ec ? nativePath : p.lexically_normal().string();
    CString logic = CString::FromUtf8(text);
    logic.Replace(u'/', u'\\');
    return logic;
}

CString ToNativeText(const CString& logicPath) {
    CString native = logicPath;
    native.Replace(u'\\', u'/');
    return native;
}

std::vector<Entry> Find(const CString& logicPattern) {
    std::vector<Entry> found;
    const int slash = logicPattern.ReverseFind(u'\\');
    const CString folder = slash >= 0 ? logicPattern.Left(slash + 1) : CString();
    const std::u16string pattern = (slash >= 0 ? logicPattern.Mid(slash + 1) : logicPattern).str();
    if (pattern.empty()) return found;

    std::optional<std::string> nativeFolder;
    if (folder.IsEmpty()) nativeFolder = std::string(".");
    else if (folder == u"\\") nativeFolder = std::string("/");
    else nativeFolder = Resolve(folder);
    if (!nativeFolder) return found;
    struct stat st;
    if (!statPath(*nativeFolder, st) || !S_ISDIR(st.st_mode)) return found;

    if (!hasWildcard(pattern)) {
        if (pattern == u"." || pattern == u"..") {
            found.push_back({CString(pattern), true});
            return found;
        }
        const auto name = matchComponent(*nativeFolder, pattern);
        if (!name) return found;
        const bool isFolder = statPath(joinNative(*nativeFolder, *name), st) && S_ISDIR(st.st_mode);
        found.push_back({CString::FromUtf8(*name), isFolder});
        return found;
    }

    for (const char16_t* dots : {u".", u".."})
        if (patternMatches(pattern, dots)) found.push_back({CString(dots), true});
    std::vector<Entry> entries;
    for (const std::string& name : readDirectory(*nativeFolder)) {
        const std::u16string wide = Utf8ToUtf16(name);
        if (!patternMatches(pattern, wide)) continue;
        const bool isFolder = statPath(joinNative(*nativeFolder, name), st) && S_ISDIR(st.st_mode);
        entries.push_back({CString(wide), isFolder});
    }
    std::sort(entries.begin(), entries.end(), [](const Entry& a, const Entry& b) { return listsBefore(a.name.str(), b.name.str()); });
    found.insert(found.end(), entries.begin(), entries.end());
    return found;
}

std::vector<Entry> List(const CString& logicFolder) {
    CString pattern = logicFolder;
    if (!pattern.IsEmpty() && !pattern.EndsWith(u"\\")) pattern += u'\\';
    std::vector<Entry> entries = Find(pattern + u"*.*");
    std::erase_if(entries, [](const Entry& e) { return e.name == u"." || e.name == u".."; });
    return entries;
}

bool Exists(const CString& logicPath) { return Resolve(logicPath).has_value(); }

bool IsFolder(const CString& logicPath) {
    const auto native = Resolve(logicPath);
    struct stat st;
    return native && statPath(*native, st) && S_ISDIR(st.st_mode);
}

bool ReadBytes(const CString& logicPath, std::string& bytes) {
    const auto native = Resolve(logicPath);
    if (!native) return false;
    std::FILE* file = std::fopen(native->c_str(), "rb");
    if (!file) return false;
    struct stat st;
    if (::fstat(::fileno(file), &st) != 0 || S_ISDIR(st.st_mode)) {
        std::fclose(file);
        return false;
    }
    std::string data;
    if (st.st_size > 0) data.reserve(static_cast<size_t>(st.st_size));
    char buffer[65536];
    size_t n;
    while ((n = std::fread(buffer, 1, sizeof buffer, file)) > 0) data.append(buffer, n);
    const bool ok = !std::ferror(file);
    std::fclose(file);
    if (ok) bytes = std::move(data);
    return ok;
}

// Whether a folder may be made inside `parent`, judged by its mode bits as for a file: root may write
// anywhere, but a folder the Windows user could not write in must refuse here too.
static bool mayMakeFolderIn(const std::string& parent) {
    struct stat st;
    return ::stat(parent.c_str(), &st) == 0 && S_ISDIR(st.st_mode) && Native::ModeGrants(st, S_IWOTH | S_IXOTH);
}

bool MakeFolder(const CString& logicPath) {
    if (IsFolder(logicPath)) return true;
    const auto native = NativeTarget(logicPath);
    if (!native || !mayMakeFolderIn(Native::ParentOf(*native))) return false;
    return ::mkdir(native->c_str(), 0777) == 0;
}

bool MakeFolders(const CString& logicPath) {
    if (IsFolder(logicPath)) return true;
    const auto native = NativeTarget(logicPath);
    if (!native) return false;
    // The deepest folder that stands decides; the ones made below it are this process's own.
    std::filesystem::path existing = std::filesystem::path(*native).parent_path();
    std::error_code ec;
    while (!existing.empty() && !std::filesystem::exists(existing, ec) && existing != existing.parent_path())
        existing = existing.parent_path();
    if (!mayMakeFolderIn(existing.empty() ? std::string(".") : existing.string())) return false;
    std::filesystem::create_directories(*native, ec);
    return IsFolder(logicPath);
}

bool CopyFile(const CString& from, const CString& to, bool overwrite) {
    std::string bytes;
    if (!ReadBytes(from, bytes)) return false;
    if (!overwrite && Exists(to)) return false;
    return WriteAtomic(to, bytes);
}

bool DeleteFile(const CString& logicPath) {
    const auto native = Resolve(logicPath);
    struct stat st;
    if (!native || !statPath(*native, st) || S_ISDIR(st.st_mode)) return false;
    return ::unlink(native->c_str()) == 0;
}

bool Rename(const CString& from, const CString& to) {
    const auto source = Resolve(from);
    if (!source) return false;
    std::optional<std::string> target = Resolve(to);
    if (!target) target = NativeTarget(to);
    if (!target) return false;
    return ::rename(source->c_str(), target->c_str()) == 0;
}

} // namespace QxFs
