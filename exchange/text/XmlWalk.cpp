// The well-formedness walk: the tokenizer's nodes, a stack of open elements, and the element index.
#include "exchange/text/XmlWalk.h"

#include "exchange/text/NodeStack.h"
#include "exchange/text/XmlTokenizer.h"
#include "support/Format.h"

#include <unordered_map>
#include <vector>

namespace {

struct OpenElement {
    int record = 0;
    int lastChild = 0;
};

bool endsComparedName(char16_t ch) {
    return IsXmlWhiteSpace(ch) || ch == u'/' || ch == u'>' || ch == u'=' || ch == u'[' || ch == u']';
}

bool endsTagName(char16_t ch) { return IsXmlWhiteSpace(ch) || ch == u'/' || ch == u'>'; }

std::u16string_view nameAt(std::u16string_view text, size_t from, bool (*ends)(char16_t)) {
    size_t end = from;
    while (end < text.size() && !ends(text[end])) ++end;
    return text.substr(from, end - from);
}

class Walk {
public:
    Walk(std::u16string_view text, CElementIndex& index) : m_text(text), m_index(index) {}

    CString Run();

private:
    void startTag(const XmlToken& token);
    void endTag(const XmlToken& token);
    void closeNotEnded(int end);
    // Only the first problem is kept, so later ones need not be put in words at all.
    bool reported() const { return !m_problem.IsEmpty(); }
    void report(CString problem) {
        if (m_problem.IsEmpty()) m_problem = std::move(problem);
    }
    // The name of an element as messages show it.
    std::u16string_view elementName(int record) const {
        return nameAt(m_text, static_cast<size_t>(m_index[record].nStart + 1), endsTagName);
    }

    // The name under which an end tag finds its start tag.
    std::u16string_view comparedName(int record) const {
        return nameAt(m_text, static_cast<size_t>(m_index[record].nStart + 1), endsComparedName);
    }
    void open(int record);
    void pop();

    std::u16string_view m_text;
    CElementIndex& m_index;
    CNodeStack<OpenElement> m_open;
    // For each name, the stack depths at which an element of that name is open, innermost last: an end tag
    // finds its start tag in one look-up, however many elements are open.
    std::unordered_map<std::u16string_view, std::vector<int>> m_openByName;
    CString m_problem;
};

CString Walk::Run() {
    m_index.Reset(static_cast<int>(m_text.size() / 64 + 8));
    m_index[0].nLength = static_cast<int>(m_text.size());
    if (m_text.empty()) return u"Empty document";
    m_open.Push({0, 0});

    XmlTokenizer tokenizer(m_text);
    for (XmlToken token = tokenizer.Next(); token.kind != XmlTokenKind::End; token = tokenizer.Next()) {
        switch (token.kind) {
        case XmlTokenKind::StartTag:
        case XmlTokenKind::EmptyElementTag: startTag(token); break;
        case XmlTokenKind::EndTag: endTag(token); break;
        case XmlTokenKind::Bad:
        case XmlTokenKind::Unterminated: report(token.problem); break;
        default: break;
        }
    }
    while (m_open.GetCount() > 1) {
        const int record = m_open.Top().record;
        if (!reported()) report(QxFormat(u"Element '%.50s' at offset %d not ended", CString(elementName(record)), m_index[record].nStart));
        closeNotEnded(static_cast<int>(m_text.size()));
    }

    const int root = m_index[0].iElemChild;
    if (root == 0) report(u"No root element");
    else if (m_index[root].iElemNext != 0) report(u"Root element has sibling");
    return m_problem;
}

void Walk::startTag(const XmlToken& token) {
    const int record = m_index.Add();
    OpenElement& parent = m_open.Top();
    QxElemPos& element = m_index[record];
    element.nStart = token.start;
    element.nStartTagLen = token.end - token.start;
    element.iElemParent = parent.record;
    element.nLevel = m_open.GetCount() - 1;
    if (parent.lastChild) {
        m_index[parent.lastChild].iElemNext = record;
        element.iElemPrev = parent.lastChild;
    } else {
        m_index[parent.record].iElemChild = record;
    }
    parent.lastChild = record;

    if (token.kind == XmlTokenKind::EmptyElementTag) {
        element.nLength = element.nStartTagLen;
        element.nFlags |= QX_ELEM_EMPTY;
        return;
    }
    open(record);
}

void Walk::open(int record) {
    m_openByName[comparedName(record)].push_back(m_open.GetCount());
    m_open.Push({record, 0});
}

// The innermost open element is always the innermost of its name.
void Walk::pop() {
    const auto entry = m_openByName.find(comparedName(m_open.Top().record));
    entry->second.pop_back();
    if (entry->second.empty()) m_openByName.erase(entry);
    m_open.Pop();
}

void Walk::endTag(const XmlToken& token) {
    const std::u16string_view endName =
        m_text.substr(static_cast<size_t>(token.nameStart), static_cast<size_t>(token.nameLength));
    const std::u16string_view compared = nameAt(endName, 0, endsComparedName);

    const auto found = m_openByName.find(compared);
    if (found == m_openByName.end()) {
        if (!reported()) report(QxFormat(u"No start tag for end tag '%.50s' at offset %d", CString(endName), token.start));
        return;
    }
    const int match = found->second.back();
    if (match != m_open.GetCount() - 1 && !reported()) {
        const int innermost = m_open.Top().record;
        report(QxFormat(u"End tag '%.50s' at offset %d does not match start tag '.50%s' at offset %d",
                        CString(endName), token.start, CString(elementName(innermost)), m_index[innermost].nStart));
    }
    while (m_open.GetCount() - 1 > match) closeNotEnded(token.start);

    QxElemPos& element = m_index[m_open.Top().record];
    element.nEndTagLen = token.end - token.start;
    element.nLength = token.end - element.nStart;
    pop();
}

// The innermost open element ends where `end` says, without an end tag of its own.
void Walk::closeNotEnded(int end) {
    QxElemPos& element = m_index[m_open.Top().record];
    element.nLength = end - element.nStart;
    element.nFlags |= QX_ELEM_NONENDED;
    pop();
}

} // namespace

CString WalkXmlDocument(std::u16string_view text, CElementIndex& index) {
    return Walk(text, index).Run();
}
