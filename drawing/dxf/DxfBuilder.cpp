// Filling a database from DXF records.
#include "drawing/dxf/DxfBuilder.h"

#include "drawing/dxf/DxfEntities.h"

namespace {

bool isPaperSpaceName(const CString& name) {
    return name.Left(12).EqualsNoCase(ACDB_PAPER_SPACE);
}

} // namespace

DxfBuilder::DxfBuilder(AcDbDatabase& database) : m_database(database), m_names(database.names(), m_decoder) {
    m_database.clear();
    auto table = std::make_unique<AcDbBlockTable>();
    m_blockTable = table.get();
    m_database.setBlockTableId(adopt(std::move(table), {}));
}

DxfBuilder::~DxfBuilder() = default;

AcDbObjectId DxfBuilder::adopt(std::unique_ptr<AcDbObject> object, AcDbHandle handle) {
    const AcDbObjectId id = object->objectId();
    if (!m_database.addAcDbObjectWithHandle(object, handle)) m_withoutHandle.push_back(std::move(object));
    return id;
}

void DxfBuilder::attachCommon(AcDbObject& object, const DxfCommonGroups& common, XDataList xdata,
                              bool isEntity) {
    // Entities keep the record they are appended to.
    if (!common.owner.isNull() && !isEntity) m_owners.push_back({&object, common.owner});
    if (!common.extensionDictionary.isNull()) m_extensionDictionaries.push_back({&object, common.extensionDictionary});
    if (!xdata.empty()) object.setXDataApps(std::move(xdata));
}

void DxfBuilder::add(const DxfRecord& record) {
    const std::string_view section = record.section;
    if (section == "HEADER") return readHeader(record);
    if (section == "TABLES") return readTableEntry(record);
    if (section == "BLOCKS") return readBlocksRecord(record);
    if (section == "ENTITIES") return readEntity(record, false);
    if (section == "OBJECTS") return readObject(record);
}

void DxfBuilder::readHeader(const DxfRecord& record) {
    for (const DxfTag& tag : record.tags) {
        if (record.type == "$ACADVER" && tag.code == 1) {
            m_decoder.setVersion(tag.value);
            m_convertsOldPolylines = !(tag.value.size() >= 6 && tag.value.substr(0, 2) == "AC" && tag.value.substr(2, 4) >= "1014");
        }
        if (record.type == "$DWGCODEPAGE" && tag.code == 3) m_decoder.setCodePage(tag.value);
        if (tag.code == 1 || tag.code == 3) m_names.forget();
        if (record.type == "$HANDSEED" && tag.code == 5) {
            AcDbHandle seed;
            if (AcDbHandle::parse(tag.value, seed)) m_database.setHandseed(seed);
        }
    }
}

AcDbBlockTableRecord* DxfBuilder::recordNamed(const CString& name, AcDbHandle handle) {
    AcDbObjectId id;
    if (m_blockTable->getAt(name, id) == Acad::eOk) return AcDbBlockTableRecord::cast(id.objectUnchecked());
    auto record = std::make_unique<AcDbBlockTableRecord>();
    record->setName(name);
    record->setOwnerId(m_blockTable->objectId());
    id = adopt(std::move(record), handle);
    m_blockTable->addExisting(id);
    return AcDbBlockTableRecord::cast(id.objectUnchecked());
}

void DxfBuilder::readTableEntry(const DxfRecord& record) {
    if (record.type != "BLOCK_RECORD") return;
    DxfValues values(m_decoder);
    const DxfCommonGroups common = ReadCommonGroups(record);
    CString name;
    for (size_t i = 0; i < common.bodyEnd; ++i)
        if (record.tags[i].code == 2) name = values.text(record.tags[i]);
    if (name.IsEmpty() || m_blockTable->has(name)) return;
    AcDbBlockTableRecord* created = recordNamed(name, common.handle);
    auto xdata = ReadXData(record, common.bodyEnd, values, m_names, m_xdataScratch);
    if (!values.bad()) attachCommon(*created, common, std::move(xdata));
}

void DxfBuilder::readBlocksRecord(const DxfRecord& record) {
    if (record.type == "BLOCK") {
        closePolyline();
        DxfValues values(m_decoder);
        const DxfCommonGroups common = ReadCommonGroups(record);
        CString name;
        AcGePoint3d origin;
        for (size_t i = 0; i < common.bodyEnd; ++i) {
            if (record.tags[i].code == 2) name = values.text(record.tags[i]);
            TakePointGroup(record.tags[i], 10, origin, values);
        }
        m_currentBlock = name.IsEmpty() ? nullptr : recordNamed(name, {});
        if (m_currentBlock != nullptr && !values.bad()) m_currentBlock->setOrigin(origin);
        return;
    }
    if (record.type == "ENDBLK") {
        closePolyline();
        m_currentBlock = nullptr;
        return;
    }
    readEntity(record, true);
}

AcDbBlockTableRecord* DxfBuilder::layoutForEntity(const AcDbEntity& entity, AcDbHandle owner) {
    // Entities come in long runs of one owner: the last owner's layout is kept.
    if (!owner.isNull() && owner != m_lastOwner) {
        AcDbObjectId ownerId;
        m_database.getAcDbObjectId(ownerId, false, owner);
        auto* record = AcDbBlockTableRecord::cast(ownerId.objectUnchecked());
        m_lastOwner = record != nullptr ? owner : AcDbHandle();
        m_lastOwnerPaperSpace = record != nullptr && isPaperSpaceName(record->name()) ? record : nullptr;
    }
    if (!owner.isNull() && owner == m_lastOwner && m_lastOwnerPaperSpace != nullptr) return m_lastOwnerPaperSpace;
    AcDbBlockTableRecord*& layout = entity.isPaperSpaceFlagged() ? m_paperSpace : m_modelSpace;
    if (layout == nullptr) layout = recordNamed(entity.isPaperSpaceFlagged() ? ACDB_PAPER_SPACE : ACDB_MODEL_SPACE, {});
    return layout;
}

void DxfBuilder::append(AcDbBlockTableRecord* record, AcDbEntity* entity) {
    entity->setOwnerId(record->objectId());
    record->appendExistingEntity(entity->objectId());
}

void DxfBuilder::resolveInsert(AcDbBlockReference& insert, const CString& blockName) {
    // Blocks are mostly defined before they are inserted; the others are looked up at the end.
    AcDbObjectId block;
    if (m_blockTable->getAt(blockName, block) == Acad::eOk) return insert.setBlockTableRecord(block);
    m_inserts.push_back({&insert, blockName});
}

void DxfBuilder::closePolyline() {
    m_openPolyline = nullptr;
    m_openSpaceVertices = nullptr;
}

namespace {

// The entity's own groups move to the polyline that holds the shape.
std::unique_ptr<AcDbEntity> keptAsOldStyle(std::unique_ptr<AcDbPolyline> shape) {
    auto kept = std::make_unique<AcDb2dPolyline>(std::move(shape));
    const AcDbPolyline& read = kept->shape();
    kept->setColorIndex(read.colorIndex());
    kept->setVisibility(read.visibility());
    kept->setPaperSpaceFlag(read.isPaperSpaceFlagged());
    return kept;
}

} // namespace

void DxfBuilder::readEntity(const DxfRecord& record, bool inBlocks) {
    const std::string_view type = record.type;
    if (type == "VERTEX" || type == "SEQEND" || type == "ATTRIB") {
        if (type == "SEQEND") closePolyline();
        DxfValues values(m_decoder);
        if (type == "VERTEX" && m_openPolyline != nullptr) AddDxfVertex(*m_openPolyline, record, values);
        if (type == "VERTEX" && m_openSpaceVertices != nullptr) AddDxfSpaceVertex(*m_openSpaceVertices, record, values);
        return;
    }
    closePolyline();
    if (inBlocks && m_currentBlock == nullptr) return;

    DxfValues values(m_decoder);
    const DxfCommonGroups common = ReadCommonGroups(record);
    DxfEntityRead read = ReadDxfEntity(record, common.bodyEnd, values);
    if (!read.entity) return;
    if (type == "POLYLINE" && !m_convertsOldPolylines && AcDbPolyline::cast(read.entity.get()) != nullptr)
        read.entity = keptAsOldStyle(std::unique_ptr<AcDbPolyline>(AcDbPolyline::cast(read.entity.release())));
    AcDbEntity* entity = read.entity.get();
    auto xdata = ReadXData(record, common.bodyEnd, values, m_names, m_xdataScratch);
    if (values.bad()) return;  // an xdata number that is none: the entity is passed over whole
    attachCommon(*entity, common, std::move(xdata), true);
    AcDbBlockTableRecord* owner = inBlocks ? m_currentBlock : layoutForEntity(*entity, common.owner);
    if (!read.layer.empty()) entity->setPooledLayer(m_names.name(read.layer));
    adopt(std::move(read.entity), common.handle);
    append(owner, entity);
    if (type == "INSERT") resolveInsert(static_cast<AcDbBlockReference&>(*entity), read.blockName);
    if (type == "POLYLINE") {
        m_openPolyline = AcDbPolyline::cast(entity);
        if (auto* kept = AcDb2dPolyline::cast(entity)) m_openPolyline = &kept->shape();
        m_openSpaceVertices = dynamic_cast<AcDbSpaceVertices*>(entity);
    }
}

void DxfBuilder::readObject(const DxfRecord& record) {
    DxfValues values(m_decoder);
    const DxfCommonGroups common = ReadCommonGroups(record);
    if (record.type == "DICTIONARY" || record.type == "ACDBDICTIONARYWDFLT") return readDictionary(record, common, values);
    if (record.type == "XRECORD") return readXrecord(record, common, values);
    auto xdata = ReadXData(record, common.bodyEnd, values, m_names, m_xdataScratch);
    if (values.bad()) return;
    auto object = std::make_unique<AcDbUnknownObject>(record.type);
    attachCommon(*object, common, std::move(xdata));
    adopt(std::move(object), common.handle);
}

void DxfBuilder::readDictionary(const DxfRecord& record, const DxfCommonGroups& common, DxfValues& values) {
    auto dictionary = std::make_unique<AcDbDictionary>();
    std::vector<PendingEntry> pending;
    bool inBody = false;
    const CString* name = &m_database.names().intern({});
    for (size_t i = 0; i < common.bodyEnd; ++i) {
        const DxfTag& tag = record.tags[i];
        if (tag.code == 100 && tag.value.starts_with("AcDbDictionary")) inBody = true;
        if (!inBody) continue;
        if (tag.code == 3) name = &m_names.name(tag.value);
        if (tag.code == 350 || tag.code == 360) {
            AcDbHandle target;
            AcDbHandle::parse(tag.value, target);
            pending.push_back({dictionary.get(), name, target});
        }
    }
    auto xdata = ReadXData(record, common.bodyEnd, values, m_names, m_xdataScratch);
    if (values.bad()) return;
    attachCommon(*dictionary, common, std::move(xdata));
    // The first dictionary of the section, owned by nothing, is the named-object dictionary.
    if (!m_namedObjectsSeen && common.owner.isNull()) {
        m_namedObjectsSeen = true;
        m_database.setNamedObjectsDictionaryId(dictionary->objectId());
    }
    m_entries.insert(m_entries.end(), pending.begin(), pending.end());
    adopt(std::move(dictionary), common.handle);
}

void DxfBuilder::readXrecord(const DxfRecord& record, const DxfCommonGroups& common, DxfValues& values) {
    size_t begin = 0;
    while (begin < common.bodyEnd && !(record.tags[begin].code == 100 && record.tags[begin].value.starts_with("AcDbXrecord")))
        ++begin;
    if (begin < common.bodyEnd) ++begin;
    else begin = 0;  // no subclass marker: everything behind the common groups is data
    if (begin == 0) {
        while (begin < common.bodyEnd && (record.tags[begin].code == 5 || record.tags[begin].code == 102 ||
                                          record.tags[begin].code == 330 || record.tags[begin].code == 360))
            ++begin;
    }
    // The cloning flag stands first, before the data.
    if (begin < common.bodyEnd && record.tags[begin].code == 280) ++begin;
    auto xrecord = std::make_unique<AcDbXrecord>();
    xrecord->setItems(ReadResItems(record.tags, begin, common.bodyEnd, values));
    auto xdata = ReadXData(record, common.bodyEnd, values, m_names, m_xdataScratch);
    if (values.bad()) return;
    attachCommon(*xrecord, common, std::move(xdata));
    adopt(std::move(xrecord), common.handle);
}

void DxfBuilder::finish() {
    closePolyline();
    recordNamed(ACDB_MODEL_SPACE, {});
    recordNamed(ACDB_PAPER_SPACE, {});
    if (!m_namedObjectsSeen) {
        auto dictionary = std::make_unique<AcDbDictionary>();
        m_database.setNamedObjectsDictionaryId(adopt(std::move(dictionary), {}));
    }
    for (auto& object : m_withoutHandle) {
        AcDbObjectId id;
        m_database.addAcDbObject(id, std::move(object));
    }
    m_withoutHandle.clear();

    auto resolve = [this](AcDbHandle handle) {
        AcDbObjectId id;
        m_database.getAcDbObjectId(id, false, handle);
        return id;
    };
    for (const PendingLink& link : m_owners) link.object->setOwnerId(resolve(link.target));
    for (const PendingLink& link : m_extensionDictionaries) link.object->setExtensionDictionary(resolve(link.target));
    for (const PendingEntry& entry : m_entries) entry.dictionary->addEntry(*entry.name, resolve(entry.target));
    for (const PendingInsert& pending : m_inserts) {
        AcDbObjectId block;
        m_blockTable->getAt(pending.blockName, block);
        pending.insert->setBlockTableRecord(block);
    }
    for (AcDbObjectId id : m_blockTable->recordIds())
        if (auto* record = AcDbBlockTableRecord::cast(id.objectUnchecked())) record->setOwnerId(m_blockTable->objectId());
}
