// The tokenizer of the plain-text XML class: one node at a time, one pass over the text.
#include "exchange/text/XmlTokenizer.h"

#include "support/Format.h"

#include <algorithm>

namespace {

// ASCII letters, "_", ":" and every character from "a" upward may open a tag name.
bool isNameStart(char16_t ch) {
    return ch >= u'a' || (ch >= u'A' && ch <= u'Z') || ch == u'_' || ch == u':';
}

bool endsTagName(char16_t ch) { return IsXmlWhiteSpace(ch) || ch == u'/' || ch == u'>'; }

} // namespace

bool IsXmlWhiteSpace(char16_t ch) { return ch == u' ' || ch == u'\t' || ch == u'\n' || ch == u'\r'; }

XmlToken XmlTokenizer::Next() {
    XmlToken token;
    token.start = token.end = m_nNext;
    if (m_nNext >= size()) return token;
    if (m_text[static_cast<size_t>(m_nNext)] == u'<') {
        token = markup(m_nNext);
    } else {
        const size_t lt = m_text.find(u'<', static_cast<size_t>(m_nNext));
        token.kind = XmlTokenKind::Text;
        token.end = lt == std::u16string_view::npos ? size() : static_cast<int>(lt);
    }
    m_nNext = token.end;
    return token;
}

XmlToken XmlTokenizer::markup(int start) {
    const int at = start + 1;
    if (at >= size()) return unterminated(start, u"Element tag");
    const char16_t ch = m_text[static_cast<size_t>(at)];
    if (ch == u'/') return tag(start, XmlTokenKind::EndTag, at + 1);
    if (ch == u'?') return delimited(start, at + 1, u"?>", XmlTokenKind::ProcessingInstruction, u"Processing instruction");
    if (ch == u'!') return bangMarkup(start);
    if (isNameStart(ch)) return tag(start, XmlTokenKind::StartTag, at);
    return bad(start, at, u"tag name character");
}

// A start or end tag: the name, then up to ">", where ">" inside a quoted attribute value does not count.
XmlToken XmlTokenizer::tag(int start, XmlTokenKind kind, int nameStart) {
    XmlToken token;
    token.kind = kind;
    token.start = start;
    token.nameStart = nameStart;
    int i = nameStart;
    while (i < size() && !endsTagName(m_text[static_cast<size_t>(i)])) ++i;
    token.nameLength = i - nameStart;

    bool afterEquals = false;
    for (; i < size(); ++i) {
        const char16_t ch = m_text[static_cast<size_t>(i)];
        if (ch == u'>') {
            token.end = i + 1;
            if (kind == XmlTokenKind::StartTag && i > nameStart && m_text[static_cast<size_t>(i - 1)] == u'/')
                token.kind = XmlTokenKind::EmptyElementTag;
            return token;
        }
        if (afterEquals && (ch == u'"' || ch == u'\'')) {
            const size_t close = m_text.find(ch, static_cast<size_t>(i + 1));
            if (close == std::u16string_view::npos) break;
            i = static_cast<int>(close);
            afterEquals = false;
            continue;
        }
        if (ch == u'=') afterEquals = true;
        else if (!IsXmlWhiteSpace(ch)) afterEquals = false;
    }
    return unterminated(start, kind == XmlTokenKind::EndTag ? u"Element end tag" : u"Element tag");
}

XmlToken XmlTokenizer::bangMarkup(int start) {
    const int at = start + 2;
    const std::u16string_view rest = m_text.substr(static_cast<size_t>(std::min(at, size())));
    if (rest.starts_with(u"--")) return delimited(start, at + 2, u"-->", XmlTokenKind::Comment, u"Comment");
    if (rest.starts_with(u"-")) return bad(start, at + 1, u"comment tag");
    if (rest.starts_with(u"[CDATA[")) return delimited(start, at + 7, u"]]>", XmlTokenKind::CdataSection, u"CDATA Section");
    if (rest.starts_with(u"[")) return bad(start, at + 1, u"tag");
    if (!rest.empty() && (rest[0] == u'D' || rest[0] == u'E' || rest[0] == u'A' || rest[0] == u'N'))
        return doctype(start);
    return bad(start, at, u"! tag");
}

XmlToken XmlTokenizer::delimited(int start, int searchFrom, std::u16string_view terminator, XmlTokenKind kind,
                                 const char16_t* unterminatedWhat) {
    const size_t from = static_cast<size_t>(std::min(searchFrom, size()));
    const size_t found = m_text.find(terminator, from);
    if (found == std::u16string_view::npos) return unterminated(start, unterminatedWhat);
    XmlToken token;
    token.kind = kind;
    token.start = start;
    token.end = static_cast<int>(found + terminator.size());
    return token;
}

// Up to the ">" that stands outside the internal subset "[...]" and outside quotes.
XmlToken XmlTokenizer::doctype(int start) {
    int depth = 0;
    char16_t quote = 0;
    for (int i = start + 2; i < size(); ++i) {
        const char16_t ch = m_text[static_cast<size_t>(i)];
        if (quote) {
            if (ch == quote) quote = 0;
        } else if (ch == u'"' || ch == u'\'') {
            quote = ch;
        } else if (ch == u'[') {
            ++depth;
        } else if (ch == u']') {
            if (depth > 0) --depth;
        } else if (ch == u'>' && depth == 0) {
            XmlToken token;
            token.kind = XmlTokenKind::Doctype;
            token.start = start;
            token.end = i + 1;
            return token;
        }
    }
    return unterminated(start, u"Doctype");
}

// The node is given up: the walk goes on behind the next ">".
XmlToken XmlTokenizer::bad(int start, int at, const char16_t* what) {
    XmlToken token;
    token.kind = XmlTokenKind::Bad;
    token.start = start;
    const size_t gt = m_text.find(u'>', static_cast<size_t>(std::min(at, size())));
    token.end = gt == std::u16string_view::npos ? size() : static_cast<int>(gt + 1);
    token.problem = QxFormat(u"Incorrect %s at offset %d", what, at);
    return token;
}

XmlToken XmlTokenizer::unterminated(int start, const char16_t* what) {
    XmlToken token;
    token.kind = XmlTokenKind::Unterminated;
    token.start = start;
    token.end = size();
    token.problem = QxFormat(u"%s at offset %d unterminated", what, start);
    return token;
}
