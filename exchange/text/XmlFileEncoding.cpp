// The declaration of an XML file and the encoding rule.
#include "exchange/text/XmlFileEncoding.h"

#include "exchange/XmlEncodingName.h"
#include "exchange/text/QxXmlTextDoc.h"
#include "exchange/text/XmlTokenizer.h"
#include "support/Encoding.h"

namespace {

// A name that can go to iconv as it stands: ASCII letters, digits and "-_.:()", nothing that iconv would
// read as options ("//IGNORE").
bool isPlainCodePageName(const CString& name) {
    if (name.IsEmpty()) return false;
    for (char16_t ch : name.str()) {
        const bool plain = (ch >= u'a' && ch <= u'z') || (ch >= u'A' && ch <= u'Z') || (ch >= u'0' && ch <= u'9') ||
                           ch == u'-' || ch == u'_' || ch == u'.' || ch == u':' || ch == u'(' || ch == u')';
        if (!plain) return false;
    }
    return true;
}

// The value of one attribute of a declaration "<?xml name="value" ...?>", or nothing.
bool findAttribute(std::u16string_view declaration, std::u16string_view wanted, CString& value) {
    size_t i = 2;  // behind "<?"
    while (i < declaration.size() && !IsXmlWhiteSpace(declaration[i]) && declaration[i] != u'?') ++i;
    for (;;) {
        while (i < declaration.size() && IsXmlWhiteSpace(declaration[i])) ++i;
        const size_t nameStart = i;
        while (i < declaration.size() && !IsXmlWhiteSpace(declaration[i]) && declaration[i] != u'=' &&
               declaration[i] != u'?')
            ++i;
        if (i == nameStart) return false;
        const std::u16string_view name = declaration.substr(nameStart, i - nameStart);
        while (i < declaration.size() && IsXmlWhiteSpace(declaration[i])) ++i;
        if (i >= declaration.size() || declaration[i] != u'=') continue;
        ++i;
        while (i < declaration.size() && IsXmlWhiteSpace(declaration[i])) ++i;
        if (i >= declaration.size() || (declaration[i] != u'"' && declaration[i] != u'\'')) return false;
        const size_t close = declaration.find(declaration[i], i + 1);
        if (close == std::u16string_view::npos) return false;
        if (name == wanted) {
            value = CQxXmlTextDoc::UnescapeText(declaration.data() + i + 1, static_cast<int>(close - i - 1));
            return true;
        }
        i = close + 1;
    }
}

} // namespace

CString CQxXmlTextDoc::GetDeclaredEncoding(const CString& head) {
    const int lt = head.Find(u'<');
    if (lt < 0 || lt + 1 >= head.GetLength() || head[lt + 1] != u'?') return CString();
    const int end = head.Find(u"?>", lt);
    if (end < 0) return CString();
    CString encoding;
    findAttribute(head.view().substr(static_cast<size_t>(lt), static_cast<size_t>(end + 2 - lt)), u"encoding", encoding);
    return encoding;
}

std::u16string DecodeXmlFileBytes(std::string_view bytes, const CString& encoding) {
    if (encoding.IsEmpty() || encoding.Left(5).EqualsNoCase(u"UTF-8")) return Utf8ToUtf16(bytes);
    if (!isPlainCodePageName(encoding)) return DecodeLegacy(bytes);
    // The declaration was found by reading single bytes, so a name that does not read ASCII as ASCII
    // (UTF-16, UTF-32) mislabels the file.
    const std::string name = XmlDecoderName(encoding.ToUtf8());
    if (!XmlLabelFitsAsciiBytes(name)) return DecodeLegacy(bytes);
    if (auto text = DecodeCodePage(bytes, name)) return *text;
    return DecodeLegacy(bytes);
}
