// The application's own text files.
#include "support/TextFile.h"

#include "support/Encoding.h"
#include "support/FileSystem.h"

void SplitTextLines(const CString& text, CStringArray& lines) {
    lines.RemoveAll();
    const std::u16string& s = text.str();
    size_t start = 0;
    while (start < s.size()) {
        size_t end = s.find(u'\n', start);
        const bool last = end == std::u16string::npos;
        if (last) end = s.size();
        size_t stop = end;
        if (stop > start && s[stop - 1] == u'\r') --stop;
        lines.Add(CString(s.substr(start, stop - start)));
        if (last) break;
        start = end + 1;
    }
}

bool ReadTextFile(const CString& logicPath, CString& text) {
    std::string bytes;
    if (!QxFs::ReadBytes(logicPath, bytes)) return false;
    text = CString(DecodeTextFile(bytes));
    return true;
}

bool ReadTextLines(const CString& logicPath, CStringArray& lines) {
    CString text;
    if (!ReadTextFile(logicPath, text)) return false;
    SplitTextLines(text, lines);
    return true;
}

bool WriteLegacyText(const CString& logicPath, const CString& text) {
    CString crlf = text;
    crlf.Replace(u"\n", u"\r\n");
    return QxFs::WriteAtomic(logicPath, EncodeLegacy(crlf.str()));
}
