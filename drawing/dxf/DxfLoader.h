// DxfLoader: groups the tags of a DXF file into records by section: header variables, table entries,
// blocks, entities and objects. It checks the frame of the file (sections opened and closed) and nothing
// of a record's content.
#pragma once

#include "drawing/dxf/DxfTokenizer.h"
#include "support/Export.h"

#include <string>
#include <string_view>
#include <vector>

struct DxfRecord {
    std::string_view section;  // "HEADER", "TABLES", "BLOCKS", "ENTITIES", "OBJECTS" or any other
    std::string_view type;     // "MTEXT", "SECTION"-less names such as "$ACADVER" in the header
    std::vector<DxfTag> tags;  // the tags behind the one that named the record
};

enum class DxfLoadStatus {
    Ok,
    NotDxf,     // no DXF at all: empty, a binary DWG, some other file
    Binary,     // binary DXF, which this reader does not take
    Truncated,  // the text ends inside a section
    Corrupt,    // a line that should be a group code is not one, or tags stand outside any section
};

class QX_API DxfLoader {
public:
    // `feed`, when given, brings the text behind `text` as the loader needs it.
    explicit DxfLoader(std::string_view text, DxfTextFeed* feed = nullptr);

    // The next record; false at the end of the file or at a fault, which status() then tells.
    bool next(DxfRecord& record);
    DxfLoadStatus status() const { return m_status; }
    size_t line() const { return m_tokenizer.line(); }

private:
    bool fail(DxfLoadStatus status);
    bool enterSection();
    bool readTag(DxfTag& tag);

    DxfTokenizer m_tokenizer;
    DxfLoadStatus m_status = DxfLoadStatus::Ok;
    std::string m_section;  // a copy: the text behind the record in hand may be given back
    bool m_inSection = false;
    bool m_sawSection = false;
    bool m_finished = false;
    bool m_hasPending = false;
    DxfTag m_pending;
};

// Whether bytes hold ASCII DXF: after an optional byte-order mark and comments, a section begins.
// `feed`, when given, brings more of the text when the comments run past what has arrived.
QX_API bool LooksLikeDxf(std::string_view bytes, DxfTextFeed* feed = nullptr);
