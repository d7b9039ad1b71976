// Small operations over text that several subsystems share.
#include "support/TextHelpers.h"

bool SplitString(const CString& text, const CString& separator, CStringArray& parts) {
    parts.RemoveAll();
    if (separator.IsEmpty()) {
        parts.Add(text);
        return true;
    }
    CString rest = text;
    for (;;) {
        const int at = rest.Find(separator);
        if (at < 0) {
            parts.Add(rest);
            return true;
        }
        parts.Add(rest.Left(at));
        rest = rest.Mid(at + separator.GetLength());
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
