// Splitting the text records of a label cell into groups.
#include "drawing/parts/RecordGroups.h"

const std::vector<CString>& LabelRecordKeys() {
    static const std::vector<CString> keys{
        u"标号:", u"序号:", u"板号:", u"板名:", u"板前板后:", u"分行:", u"接线路径号:", u"合并过的标号数组:",
        u"接线图章组件:", u"接线图章旋转角度:", u"布置比例:", u"元件描述:", u"元件顺序号:", u"元件标注距离:",
        u"元件类名:", u"屏柜图组件:", u"空开图组件:"};
    return keys;
}

const std::vector<CString>& ComponentRecordKeys() {
    static const std::vector<CString> keys{u"标号:", u"名称:", u"编码:", u"型号:", u"数量:"};
    return keys;
}

namespace {

int matchingKey(const CString& line, const std::vector<CString>& keys) {
    for (size_t k = 0; k < keys.size(); ++k)
        if (line.StartsWith(keys[k])) return static_cast<int>(k);
    return -1;
}

} // namespace

RecordGroups::RecordGroups(CStringArray lines, const std::vector<CString>& keys)
    : m_lines(std::move(lines)), m_keys(keys) {
    std::vector<int> current(keys.size(), -1);
    auto close = [&] { m_setters.insert(m_setters.end(), current.begin(), current.end()); };
    for (int i = 0; i < m_lines.GetSize(); ++i) {
        const int key = matchingKey(m_lines[i], keys);
        if (key == 0 && i > 0) close();
        if (key >= 0) current[static_cast<size_t>(key)] = i;
        if (i == m_lines.GetUpperBound()) close();
    }
    close();
}

CString RecordGroups::value(size_t group, int key) const {
    const size_t k = static_cast<size_t>(key);
    const int line = m_setters.at(group * m_keys.size() + k);
    return line < 0 ? CString() : m_lines[line].Mid(m_keys[k].GetLength());
}
