// Grouping DXF tags into records.
#include "drawing/dxf/DxfLoader.h"

namespace {

constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";

std::string_view withoutBom(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    return text;
}

std::string_view trimmedValue(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
    return text;
}

bool isRecordStart(const DxfTag& tag, bool header) {
    return tag.code == 0 || (header && tag.code == 9);
}

} // namespace

DxfLoader::DxfLoader(std::string_view text, DxfTextFeed* feed) : m_tokenizer(text, feed) {
    m_tokenizer.skipByteOrderMark();
    if (withoutBom(text).starts_with(kBinarySentinel)) fail(DxfLoadStatus::Binary);
}

bool DxfLoader::fail(DxfLoadStatus status) {
    m_status = status;
    m_finished = true;
    return false;
}

// Comments (999) may stand anywhere and are no data.
bool DxfLoader::readTag(DxfTag& tag) {
    if (m_hasPending) {
        tag = m_pending;
        m_hasPending = false;
        return true;
    }
    while (m_tokenizer.next(tag))
        if (tag.code != 999) return true;
    return false;
}

// Outside sections: comments, the start of the next section, or the end of the file.
bool DxfLoader::enterSection() {
    DxfTag tag;
    while (readTag(tag)) {
        const std::string_view value = trimmedValue(tag.value);
        if (tag.code == 0 && value == "EOF") {
            m_finished = true;
            return false;
        }
        if (tag.code != 0 || value != "SECTION") return fail(m_sawSection ? DxfLoadStatus::Corrupt : DxfLoadStatus::NotDxf);
        DxfTag name;
        if (!readTag(name) || name.code != 2) return fail(m_tokenizer.failed() ? DxfLoadStatus::Corrupt : DxfLoadStatus::Truncated);
        m_section = trimmedValue(name.value);
        m_inSection = true;
        m_sawSection = true;
        return true;
    }
    if (m_tokenizer.failed()) return fail(m_sawSection ? DxfLoadStatus::Corrupt : DxfLoadStatus::NotDxf);
    if (!m_sawSection) return fail(DxfLoadStatus::NotDxf);
    m_finished = true;
    return false;
}

bool DxfLoader::next(DxfRecord& record) {
    while (!m_finished) {
        if (!m_inSection && !enterSection()) return false;
        const bool header = m_section == "HEADER";
        DxfTag tag;
        if (!readTag(tag)) return fail(m_tokenizer.failed() ? DxfLoadStatus::Corrupt : DxfLoadStatus::Truncated);
        // The record handed out before is done with: only this tag and what follows it are needed now.
        m_tokenizer.keepFrom(tag.value.data());
        if (tag.code == 0 && trimmedValue(tag.value) == "ENDSEC") {
            m_inSection = false;
            continue;
        }
        // Stray tags before the first record of a section are passed over.
        if (!isRecordStart(tag, header)) continue;

        record.section = m_section;
        record.type = trimmedValue(tag.value);
        // Tags are read straight into the record: copying each one costs more than reading it.
        record.tags.clear();
        while (readTag(record.tags.emplace_back())) {
            if (isRecordStart(record.tags.back(), header)) {
                m_pending = record.tags.back();
                m_hasPending = true;
                record.tags.pop_back();
                return true;
            }
        }
        record.tags.pop_back();
        return fail(m_tokenizer.failed() ? DxfLoadStatus::Corrupt : DxfLoadStatus::Truncated);
    }
    return false;
}

bool LooksLikeDxf(std::string_view bytes, DxfTextFeed* feed) {
    DxfTokenizer tokenizer(bytes, feed);
    tokenizer.skipByteOrderMark();
    DxfTag tag;
    while (tokenizer.next(tag)) {
        if (tag.code == 999) continue;
        return tag.code == 0 && trimmedValue(tag.value) == "SECTION";
    }
    return false;
}
