// Small operations over text that several subsystems share.
#include "support/TextHelpers.h"

bool SplitString(const CString& text, const CString& separator, CStringArray& parts) {
    parts.RemoveAll();
    if (separator.IsEmpty()) {
        parts.Add(text);
        return true;
    }
    // Pieces are cut from the whole text by position: cutting the rest off again after each piece copies
    // it each time, which is quadratic on a list of many short items.
    const int step = separator.GetLength();
    for (int start = 0;;) {
        const int at = text.Find(separator, start);
        if (at < 0) {
            parts.Add(text.Mid(start));
            return true;
        }
        parts.Add(text.Mid(start, at - start));
        start = at + step;
    }
}

bool IsDigitString(const CString& text) {
    if (text.IsEmpty()) return false;
    for (char16_t ch : text.str())
        if (ch < u'0' || ch > u'9') return false;
    return true;
}

void ReplaceRootSign(const CString& text, CString& result) {
    result = text;
    result.Replace(u"\\U+221A", u"\u221A");
}
