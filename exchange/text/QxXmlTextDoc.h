// CQxXmlTextDoc: an XML document kept as one wide string with a compact index of its elements.
#pragma once

#include "exchange/text/ElementIndex.h"
#include "support/CString.h"

// Loads a file with the encoding its declaration names, checks that the text is well formed in one pass,
// and keeps the text whatever the check finds. No node tree is built.
class QX_API CQxXmlTextDoc {
public:
    CQxXmlTextDoc() { SetDoc(nullptr); }
    virtual ~CQxXmlTextDoc() = default;

    // Takes the text (a null text is the empty document) and parses it. True when it is well formed.
    bool SetDoc(const char16_t* text);
    bool SetDoc(const CString& text);
    // Reads the file and parses it; m_strError then holds the read's status line, joined with the first
    // parse message. When the file cannot be read, m_strError holds the system's reason and the document
    // stays as it was. True when the file was read and is well formed.
    bool Load(const CString& path);
    // True when the last Load could read its file, whatever the parse found; false before any Load.
    bool FileWasRead() const { return m_bFileRead; }
    bool IsWellFormed() const { return m_bWellFormed; }
    // Elements found by the last parse.
    int GetElementCount() const { return m_index.GetSize() - 1; }

    // Decodes character references: decimal, hexadecimal and the named ones of the entity table. A
    // reference that cannot be decoded stays as text. A length of -1 means up to the terminating zero.
    static CString UnescapeText(const char16_t* text, int length = -1);
    // The encoding named by the XML declaration at the start of `head`; empty when there is none.
    static CString GetDeclaredEncoding(const CString& head);

    CString m_strDoc;
    CString m_strError;  // the last load and parse result in words; empty means nothing to report

private:
    bool parse();

    CElementIndex m_index;
    bool m_bWellFormed = false;
    bool m_bFileRead = false;
};
