// What the readers of single records share: the text decoder, number parsing that marks a bad record,
// and the groups every object has (handle, owner, extension dictionary, xdata).
#pragma once

#include "drawing/dxf/DxfLoader.h"
#include "drawing/dxf/DxfTextDecoder.h"
#include "drawing/model/AcDbNamePool.h"
#include "drawing/model/AcDbObject.h"

#include <array>
#include <string>
#include <vector>

class DxfValues {
public:
    explicit DxfValues(const DxfTextDecoder& decoder) : m_decoder(decoder) {}

    double real(const DxfTag& tag);
    long long integer(const DxfTag& tag);
    CString text(const DxfTag& tag) const { return m_decoder.decode(tag.value); }
    const DxfTextDecoder& decoder() const { return m_decoder; }

    // True when a value that must be a number was not one: the record is to be passed over.
    bool bad() const { return m_bad; }
    void markBad() { m_bad = true; }

private:
    const DxfTextDecoder& m_decoder;
    bool m_bad = false;
};

// Names read from DXF bytes (xdata applications, layers, dictionary entries), shared through a
// database's pool. The same few names come back again and again: the last ones are found without
// decoding them again.
class DxfNames {
public:
    DxfNames(AcDbNamePool& pool, const DxfTextDecoder& decoder) : m_pool(pool), m_decoder(decoder) {}

    const CString& name(std::string_view bytes);
    // After the decoder changed: the same bytes may now mean another name.
    void forget();

private:
    struct Recent {
        std::string bytes;
        const CString* name = nullptr;
    };

    AcDbNamePool& m_pool;
    const DxfTextDecoder& m_decoder;
    std::array<Recent, 16> m_recent;
    size_t m_next = 0;       // the slot that a new name takes
    size_t m_lastFound = 0;  // the slot of the name given last
};

// The groups of a record that every object has, and where its xdata begins.
struct DxfCommonGroups {
    AcDbHandle handle;
    AcDbHandle owner;
    AcDbHandle extensionDictionary;
    size_t bodyEnd = 0;  // index of the first 1001 tag, or the number of tags
};

DxfCommonGroups ReadCommonGroups(const DxfRecord& record);

// Items of xrecord data or xdata, tags [begin, end): x, y and z of a point join into one item, handles
// are normalised to upper-case hexadecimal without leading zeros.
ResItems ReadResItems(const std::vector<DxfTag>& tags, size_t begin, size_t end, DxfValues& values);
// The same, appended to `items`.
void AppendResItems(const std::vector<DxfTag>& tags, size_t begin, size_t end, DxfValues& values, ResItems& items);
// Room that ReadXData uses again from record to record, rather than allocating twice for each.
struct DxfXDataScratch {
    std::vector<XDataList::Run> runs;
    ResItems items;
};
// The xdata of a record, from its first 1001 tag on, per application in order.
XDataList ReadXData(const DxfRecord& record, size_t begin, DxfValues& values, DxfNames& names,
                    DxfXDataScratch& scratch);

// Accumulates a point from the groups base, base + 10 and base + 20.
bool TakePointGroup(const DxfTag& tag, int base, AcGePoint3d& point, DxfValues& values);
bool TakeVectorGroup(const DxfTag& tag, int base, AcGeVector3d& vector, DxfValues& values);
