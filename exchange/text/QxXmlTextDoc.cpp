// CQxXmlTextDoc: setting, loading and parsing the document.
#include "exchange/text/QxXmlTextDoc.h"

#include "exchange/text/XmlFileEncoding.h"
#include "exchange/text/XmlWalk.h"
#include "support/FileSystem.h"
#include "support/Format.h"

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace {

// How many bytes of a file are searched for the declaration.
constexpr size_t kDeclarationWindow = 100;

// The system's words for a file that cannot be opened, up to the first line end. The errno code is
// ENOENT when the file is not there, EISDIR for a folder, EACCES for a file that cannot be read.
CString openFailureText(const CString& path) {
    int code = EACCES;
    if (!QxFs::Exists(path)) code = ENOENT;
    else if (QxFs::IsFolder(path)) code = EISDIR;
    CString text(std::strerror(code));
    for (const char16_t lineEnd : {u'\r', u'\n'})
        if (const int at = text.Find(lineEnd); at >= 0) text = text.Left(at);
    return text;
}

} // namespace

bool CQxXmlTextDoc::SetDoc(const char16_t* text) {
    m_strDoc = CString(text);
    m_strError.Empty();
    return parse();
}

bool CQxXmlTextDoc::SetDoc(const CString& text) {
    m_strDoc = text;
    m_strError.Empty();
    return parse();
}

bool CQxXmlTextDoc::Load(const CString& path) {
    std::string bytes;
    m_bFileRead = QxFs::ReadBytes(path, bytes);
    if (!m_bFileRead) {
        m_strError = openFailureText(path);
        return false;
    }
    CString head;
    for (size_t i = 0; i < std::min(bytes.size(), kDeclarationWindow); ++i)
        head += static_cast<char16_t>(static_cast<unsigned char>(bytes[i]));
    m_strDoc = CString(DecodeXmlFileBytes(bytes, GetDeclaredEncoding(head)));
    m_strError = QxFormat(u"%s%d bytes to %d wide chars", u"", static_cast<long long>(bytes.size()), m_strDoc.GetLength());
    return parse();
}

// An earlier status line in m_strError stays in front of the parse message.
bool CQxXmlTextDoc::parse() {
    const CString status = m_strError;
    const CString problem = WalkXmlDocument(m_strDoc.view(), m_index);
    m_bWellFormed = problem.IsEmpty();
    if (status.IsEmpty()) m_strError = problem;
    else if (problem.IsEmpty()) m_strError = status;
    else m_strError = status + u", " + problem;
    return m_bWellFormed;
}
