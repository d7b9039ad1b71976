// Builds drawings in memory.
#include "drawing/model/DrawingBuilder.h"

DrawingBuilder::DrawingBuilder() : m_owned(std::make_unique<AcDbDatabase>()), m_database(m_owned.get()) {}

DrawingBuilder::DrawingBuilder(AcDbDatabase& database) : m_database(&database) {}

AcDbBlockTableRecord* DrawingBuilder::target(AcDbObjectId into) const {
    if (into.isNull()) into = m_database->modelSpaceId();
    return AcDbBlockTableRecord::cast(into.objectUnchecked());
}

AcDbObjectId DrawingBuilder::defineBlock(const CString& name, const AcGePoint3d& origin) {
    AcDbBlockTable* table = nullptr;
    if (m_database->getBlockTable(table, AcDb::kForWrite) != Acad::eOk) return {};
    auto record = std::make_unique<AcDbBlockTableRecord>();
    record->setName(name);
    record->setOrigin(origin);
    AcDbObjectId id;
    table->add(id, std::move(record));
    table->close();
    return id;
}

AcDbObjectId DrawingBuilder::addEntity(std::unique_ptr<AcDbEntity> entity, AcDbObjectId into) {
    AcDbBlockTableRecord* record = target(into);
    if (record == nullptr) return {};
    record->upgradeOpen();
    AcDbObjectId id;
    record->appendAcDbEntity(id, std::move(entity));
    record->close();
    return id;
}

AcDbObjectId DrawingBuilder::addText(const CString& text, const AcGePoint3d& position, AcDbObjectId into) {
    auto entity = std::make_unique<AcDbText>();
    entity->setTextString(text);
    entity->setPosition(position);
    return addEntity(std::move(entity), into);
}

AcDbObjectId DrawingBuilder::addAttributeDefinition(const CString& tag, const CString& value,
                                                    const AcGePoint3d& position, AcDbObjectId into) {
    auto entity = std::make_unique<AcDbAttributeDefinition>();
    entity->setTag(tag);
    entity->setTextString(value);
    entity->setPosition(position);
    return addEntity(std::move(entity), into);
}

AcDbObjectId DrawingBuilder::addMText(const CString& contents, const AcGePoint3d& location, AcDbObjectId into) {
    auto entity = std::make_unique<AcDbMText>();
    entity->setContents(contents);
    entity->setLocation(location);
    return addEntity(std::move(entity), into);
}

AcDbObjectId DrawingBuilder::addInsert(AcDbObjectId block, const AcGePoint3d& position, AcDbObjectId into,
                                       const AcGeVector3d& scale, double rotation) {
    auto entity = std::make_unique<AcDbBlockReference>();
    entity->setBlockTableRecord(block);
    entity->setPosition(position);
    entity->setScaleFactors(scale);
    entity->setRotation(rotation);
    return addEntity(std::move(entity), into);
}

AcDbObjectId DrawingBuilder::addInsert(const CString& blockName, const AcGePoint3d& position, AcDbObjectId into) {
    AcDbObjectId block;
    if (const auto* table = AcDbBlockTable::cast(m_database->blockTableId().objectUnchecked()))
        table->getAt(blockName, block);
    return addInsert(block, position, into);
}

AcDbObjectId DrawingBuilder::addPolyline(const std::vector<PolylineVertex>& vertices, bool closed, AcDbObjectId into) {
    auto entity = std::make_unique<AcDbPolyline>();
    for (const PolylineVertex& v : vertices) entity->addVertexAt(entity->numVerts(), {v.x, v.y}, v.bulge);
    entity->setClosed(closed);
    return addEntity(std::move(entity), into);
}

AcDbObjectId DrawingBuilder::addLine(const AcGePoint3d& start, const AcGePoint3d& end, AcDbObjectId into) {
    return addEntity(std::make_unique<AcDbLine>(start, end), into);
}

AcDbObjectId DrawingBuilder::addCircle(const AcGePoint3d& center, double radius, AcDbObjectId into) {
    auto entity = std::make_unique<AcDbCircle>();
    entity->setCenter(center);
    entity->setRadius(radius);
    return addEntity(std::move(entity), into);
}

AcDbObjectId DrawingBuilder::addArc(const AcGePoint3d& center, double radius, double startRadians, double endRadians,
                                    AcDbObjectId into) {
    auto entity = std::make_unique<AcDbArc>();
    entity->setCenter(center);
    entity->setRadius(radius);
    entity->setStartAngle(startRadians);
    entity->setEndAngle(endRadians);
    return addEntity(std::move(entity), into);
}

void DrawingBuilder::setXData(AcDbObjectId object, const CString& application, const ResItems& items) {
    if (AcDbObject* found = object.objectUnchecked()) found->setXDataItems(application, items);
}

void DrawingBuilder::setXDataStrings(AcDbObjectId object, const CString& application,
                                     std::initializer_list<CString> values) {
    setXData(object, application, TextItems(1000, values));
}

void DrawingBuilder::setXDataLinks(AcDbObjectId object, const CString& application,
                                   std::initializer_list<AcDbObjectId> targets) {
    ResItems items;
    for (const AcDbObjectId& target : targets) items.push_back(ResItem::text(1005, target.handle().text()));
    setXData(object, application, items);
}

AcDbObjectId DrawingBuilder::extensionDictionary(AcDbObjectId object) {
    AcDbObject* found = object.objectUnchecked();
    if (found == nullptr) return {};
    if (!found->extensionDictionary().isNull()) return found->extensionDictionary();
    auto dictionary = std::make_unique<AcDbDictionary>();
    dictionary->setOwnerId(object);
    AcDbObjectId id;
    m_database->addAcDbObject(id, std::move(dictionary));
    found->setExtensionDictionary(id);
    return id;
}

AcDbObjectId DrawingBuilder::addXrecordTo(AcDbObjectId dictionary, const CString& entryName, const ResItems& items) {
    auto* found = AcDbDictionary::cast(dictionary.objectUnchecked());
    if (found == nullptr) return {};
    auto record = std::make_unique<AcDbXrecord>();
    record->setItems(items);
    AcDbObjectId id;
    found->setAt(entryName, std::move(record), id);
    return id;
}

AcDbObjectId DrawingBuilder::addXrecord(AcDbObjectId object, const CString& entryName, const ResItems& items) {
    return addXrecordTo(extensionDictionary(object), entryName, items);
}

AcDbObjectId DrawingBuilder::addTextXrecord(AcDbObjectId object, const CString& entryName,
                                            std::initializer_list<CString> lines) {
    return addXrecord(object, entryName, TextItems(1, lines));
}

AcDbObjectId DrawingBuilder::namedDictionary(const CString& name, AcDbObjectId parent) {
    if (parent.isNull()) parent = m_database->namedObjectsDictionaryId();
    auto* found = AcDbDictionary::cast(parent.objectUnchecked());
    if (found == nullptr) return {};
    AcDbObjectId id;
    if (found->getAt(name, id) == Acad::eOk && AcDbDictionary::cast(id.objectUnchecked())) return id;
    found->setAt(name, std::make_unique<AcDbDictionary>(), id);
    return id;
}

void DrawingBuilder::erase(AcDbObjectId object) {
    if (AcDbObject* found = object.objectUnchecked()) found->erase();
}

ResItems DrawingBuilder::TextItems(short code, std::initializer_list<CString> values) {
    ResItems items;
    for (const CString& value : values) items.push_back(ResItem::text(code, value));
    return items;
}
