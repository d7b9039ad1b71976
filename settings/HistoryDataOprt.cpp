// CHistoryDataOprt: reading and rewriting the history file.
#include "settings/HistoryDataOprt.h"

#include "platform/InstallPath.h"
#include "settings/HistoryDefaults.h"
#include "support/FileSystem.h"
#include "support/Format.h"
#include "support/TextFile.h"

namespace {

CString localDataFolder() {
    const CString install = GetInstallPath_CV();
    return install.IsEmpty() ? CString() : install + u"LocalData";
}

// One value a line, line ends between lines only. The split is by hand because the file has no line end
// after its last line: a text that ends with a line end has an empty last value, which a general line
// reader would drop.
void splitValues(const CString& text, CStringArray& values) {
    values.RemoveAll();
    if (text.IsEmpty()) return;
    const std::u16string& s = text.str();
    size_t start = 0;
    for (;;) {
        const size_t end = s.find(u'\n', start);
        size_t stop = end == std::u16string::npos ? s.size() : end;
        if (stop > start && s[stop - 1] == u'\r') --stop;
        values.Add(CString(s.substr(start, stop - start)));
        if (end == std::u16string::npos) return;
        start = end + 1;
    }
}

bool writeValues(const CString& path, const CStringArray& values) {
    CString text;
    for (int i = 0; i < values.GetSize(); ++i) {
        if (i > 0) text += u'\n';
        text += values[i];
    }
    return WriteLegacyText(path, text);
}

} // namespace

CHistoryDataOprt::CHistoryDataOprt() {
    GetHistoryDefaults(m_arrData);
    const CString folder = localDataFolder();
    if (folder.IsEmpty()) return;
    m_strPath = folder + u"\\HistoryData.txt";

    if (!QxFs::Exists(m_strPath)) {
        // A first run: the file is made only where LocalData already is; a failure stays silent.
        if (QxFs::IsFolder(folder)) writeValues(m_strPath, m_arrData);
        return;
    }
    CString text;
    if (!ReadTextFile(m_strPath, text)) return;
    CStringArray lines;
    splitValues(text, lines);
    for (int k = 0; k < lines.GetSize(); ++k) {
        if (k < m_arrData.GetSize()) m_arrData[k] = lines[k];
        else m_arrData.Add(lines[k]);
    }
}

CHistoryDataOprt::~CHistoryDataOprt() {
    if (!m_bChanged || m_strPath.IsEmpty()) return;
    try {
        QxFs::MakeFolder(localDataFolder());
        writeValues(m_strPath, m_arrData);
    } catch (...) {
        // A destructor must not throw; the values of this run are lost, the old file stays whole.
    }
}

void CHistoryDataOprt::GetData(int index, CString& text) const {
    text.Empty();
    if (index < 0 || index >= m_arrData.GetSize()) return;
    text = m_arrData[index];
}

void CHistoryDataOprt::SetIntData(int index, int value) { setText(index, QxFormat(u"%d", value)); }

void CHistoryDataOprt::SetDoubleData(int index, double value) { setText(index, QxFormat(u"%.2f", value)); }

void CHistoryDataOprt::setText(int index, const CString& text) {
    if (index < 0 || index >= m_arrData.GetSize()) return;
    m_arrData[index] = text;
    m_bChanged = true;
}
