// Cuts XML text into nodes (tags, text, comments, ...) without knowing how elements nest.
#pragma once

#include "support/CString.h"

#include <string_view>

enum class XmlTokenKind {
    End,                    // no text left
    Text,                   // text or white space up to the next "<"
    StartTag,               // <name ...>
    EmptyElementTag,        // <name .../>
    EndTag,                 // </name>
    Comment,                // <!-- ... -->
    ProcessingInstruction,  // <? ... ?>
    CdataSection,           // <![CDATA[ ... ]]>
    Doctype,                // <!DOCTYPE ...> and other <!NAME ...> declarations
    Bad,                    // a character that fits no markup; the node is skipped up to ">"
    Unterminated,           // markup whose end is missing; the node runs to the end of the text
};

struct XmlToken {
    XmlTokenKind kind = XmlTokenKind::End;
    int start = 0;  // offset of the node's first character
    int end = 0;    // offset behind its last character
    // Tags: the name, ending at white space, "/" or ">".
    int nameStart = 0;
    int nameLength = 0;
    // Bad and Unterminated: the message, already formatted.
    CString problem;
};

class XmlTokenizer {
public:
    explicit XmlTokenizer(std::u16string_view text) : m_text(text) {}

    // The node at the current position; the position moves behind it.
    XmlToken Next();

private:
    XmlToken markup(int start);
    XmlToken tag(int start, XmlTokenKind kind, int nameStart);
    XmlToken bangMarkup(int start);
    XmlToken delimited(int start, int searchFrom, std::u16string_view terminator, XmlTokenKind kind,
                       const char16_t* unterminatedWhat);
    XmlToken doctype(int start);
    XmlToken bad(int start, int at, const char16_t* what);
    XmlToken unterminated(int start, const char16_t* what);
    int size() const { return static_cast<int>(m_text.size()); }

    std::u16string_view m_text;
    int m_nNext = 0;
};

bool IsXmlWhiteSpace(char16_t ch);
