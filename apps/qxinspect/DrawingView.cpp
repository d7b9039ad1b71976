// qxinspect drawing FILE: the drawing model as the DXF reader fills it, as JSON. Per block table record
// its entities in drawing order, with their xdata and extension dictionaries, then the named-object
// dictionary. Written entity by entity, so that a large drawing never stands in memory as JSON.
#include "StreamedJson.h"
#include "Views.h"
#include "drawing/model/AcDb.h"
#include "support/FileSystem.h"

#include <iostream>
#include <nlohmann/json.hpp>
#include <unordered_set>

namespace {

// Keys keep the order in which they are set.
using json = nlohmann::ordered_json;

std::string utf8(const CString& text) {
    return text.ToUtf8();
}

json point(const AcGePoint3d& p) {
    return json::array({p.x, p.y, p.z});
}

json itemsJson(const ResItems& items) {
    json out = json::array();
    for (const ResItem& item : items) {
        json value;
        switch (item.kind()) {
        case RbKind::Text: value = utf8(item.asText()); break;
        case RbKind::Point: value = point(item.asPoint()); break;
        case RbKind::Real: value = item.asReal(); break;
        default: value = item.asInteger(); break;
        }
        out.push_back({{"code", item.code()}, {"value", value}});
    }
    return out;
}

json dictionaryJson(AcDbObjectId id, std::unordered_set<AcDbObjectId>& onPath);

// An entry's object: xrecords with their items, dictionaries with their entries.
json entryObjectJson(AcDbObjectId id, std::unordered_set<AcDbObjectId>& onPath) {
    AcDbObjectPointer<AcDbObject> object(id, AcDb::kForRead);
    if (!object) return nullptr;
    json out{{"kind", std::string(object->dxfName())}, {"handle", utf8(object->objectHandle().text())}};
    if (const auto* xrecord = AcDbXrecord::cast(object.get())) out["items"] = itemsJson(xrecord->items());
    if (AcDbDictionary::cast(object.get())) {
        const json nested = dictionaryJson(id, onPath);
        out["entries"] = nested["entries"];
        if (nested.contains("cycle")) out["cycle"] = true;
    }
    return out;
}

json dictionaryJson(AcDbObjectId id, std::unordered_set<AcDbObjectId>& onPath) {
    AcDbObjectPointer<AcDbDictionary> dictionary(id, AcDb::kForRead);
    if (!dictionary) return nullptr;
    json out{{"handle", utf8(dictionary->objectHandle().text())}, {"entries", json::array()}};
    // Dictionaries that hold each other are shown once on each path; very deep nesting is cut.
    constexpr size_t kMaxDepth = 64;
    if (onPath.size() >= kMaxDepth || !onPath.insert(id).second) {
        out["cycle"] = true;
        return out;
    }
    for (const AcDbDictionary::Entry& entry : dictionary->entries()) {
        json shown = entryObjectJson(entry.id, onPath);
        if (shown.is_null()) shown = json{{"kind", nullptr}};
        shown["name"] = utf8(entry.name);
        out["entries"].push_back(shown);
    }
    onPath.erase(id);
    return out;
}

json xdataJson(const AcDbObject& object) {
    json out = json::array();
    for (const XDataApp& app : object.xDataApps())
        out.push_back({{"application", utf8(app.name)}, {"items", itemsJson(app.items.copy())}});
    return out;
}

void addKindFields(const AcDbEntity& entity, json& out) {
    if (const auto* text = AcDbText::cast(&entity)) {
        out["textString"] = utf8(text->textString());
        out["position"] = point(text->position());
        if (const auto* attdef = dynamic_cast<const AcDbAttributeDefinition*>(text)) out["tag"] = utf8(attdef->tag());
    }
    if (const auto* mtext = AcDbMText::cast(&entity)) {
        out["contents"] = utf8(mtext->contents());
        out["location"] = point(mtext->location());
    }
    if (const auto* insert = AcDbBlockReference::cast(&entity)) {
        const auto* block = AcDbBlockTableRecord::cast(insert->blockTableRecord().objectUnchecked());
        out["blockName"] = block ? json(utf8(block->name())) : json(nullptr);
        out["position"] = point(insert->position());
        AcDbExtents extents;
        out["extents"] = insert->getGeomExtents(extents) == Acad::eOk
            ? json{{"min", point(extents.minPoint())}, {"max", point(extents.maxPoint())}}
            : json(nullptr);
    }
    // An old-style polyline shows the same vertices as a light-weight one: only its kind differs.
    const AcDbPolyline* polyline = AcDbPolyline::cast(&entity);
    if (const auto* oldStyle = AcDb2dPolyline::cast(&entity)) polyline = &oldStyle->shape();
    if (polyline) {
        json vertices = json::array();
        json bulges = json::array();
        for (unsigned i = 0; i < polyline->numVerts(); ++i) {
            AcGePoint2d p;
            double bulge = 0.0;
            polyline->getPointAt(i, p);
            polyline->getBulgeAt(i, bulge);
            vertices.push_back(json::array({p.x, p.y}));
            bulges.push_back(bulge);
        }
        out["closed"] = polyline->isClosed();
        out["vertices"] = vertices;
        out["bulges"] = bulges;
    }
}

json entityJson(const AcDbEntity& entity) {
    json out{{"kind", std::string(entity.dxfName())},
             {"handle", utf8(entity.objectHandle().text())},
             {"layer", utf8(entity.layer())}};
    addKindFields(entity, out);
    out["xdata"] = xdataJson(entity);
    std::unordered_set<AcDbObjectId> onPath;
    out["extensionDictionary"] = dictionaryJson(entity.extensionDictionary(), onPath);
    return out;
}

// The record's entities are written one at a time: a large drawing is never held as JSON whole.
void writeRecord(StreamedJson& out, const AcDbBlockTableRecord& record) {
    out.BeginObject();
    out.Value(utf8(record.name()), "name");
    out.Value(utf8(record.objectHandle().text()), "handle");
    out.Value(point(record.origin()), "origin");
    out.BeginArray("entities");
    std::unique_ptr<AcDbBlockTableRecordIterator> it;
    record.newIterator(it);
    for (; !it->done(); it->step()) {
        AcDbEntity* entity = nullptr;
        if (it->getEntity(entity, AcDb::kForRead) != Acad::eOk) continue;
        out.Value(entityJson(*entity));
        entity->close();
    }
    out.End();
    out.End();
}

int showDrawing(const std::string& file) {
    const CString path = QxFs::FromNative(file);
    AcDbDatabase database(false, true);
    const Acad::ErrorStatus status = database.readDwgFile(path);
    if (status != Acad::eOk) {
        std::cerr << "qxinspect: the drawing " << file << " cannot be read (status " << status << ")\n";
        return kInputUnreadable;
    }
    StreamedJson out(std::cout);
    out.BeginObject();
    out.Value(utf8(QxFs::ToNativeText(path)), "file");
    out.BeginArray("blocks");
    AcDbBlockTable* table = nullptr;
    if (database.getBlockTable(table, AcDb::kForRead) == Acad::eOk) {
        for (AcDbObjectId id : table->recordIds()) {
            AcDbObjectPointer<AcDbBlockTableRecord> record(id, AcDb::kForRead);
            if (record) writeRecord(out, *record.get());
        }
        table->close();
    }
    out.End();
    std::unordered_set<AcDbObjectId> onPath;
    out.Value(dictionaryJson(database.namedObjectsDictionaryId(), onPath), "namedObjects");
    out.End();
    std::cout << '\n';
    return kViewRan;
}

const bool registered = RegisterInspectView({
    "drawing",
    "The drawing model of a DXF file (or X.dwg holding DXF, or with X.dxf beside it)",
    [](CLI::App& command) -> std::function<int()> {
        auto file = std::make_shared<std::string>();
        command.add_option("FILE", *file, "the drawing")->required();
        return [file] { return showDrawing(*file); };
    },
});

} // namespace
