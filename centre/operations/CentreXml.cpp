// The XML blocks the centre hands out: the cabinet rows and the schema of the product fields.
#include "centre/operations/CentreXml.h"

#include <pugixml.hpp>
#include <sstream>
#include <string>

namespace {

// The product attributes, in the order they are written. F_Parent_BOM_ID names a row's parent row; the
// rows clients send have none, and the reader keeps only rows whose parent ID is short.
const char* const kProductFields[] = {"F_Numbers", "F_Name",  "F_Remark",        "F_Model",
                                      "F_Code",    "F_Label", "F_Parent_BOM_ID", "F_IsSecondary"};

CString printed(const pugi::xml_document& document) {
    std::ostringstream out;
    document.save(out, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
    return CString::FromUtf8(out.str());
}

void set(pugi::xml_node element, const char* name, const CString& value) {
    element.append_attribute(name).set_value(value.ToUtf8().c_str());
}

void appendProduct(pugi::xml_node cabinet, const CentreRow& row) {
    pugi::xml_node product = cabinet.append_child("product");
    set(product, "F_Numbers", row.count);
    set(product, "F_Name", row.name);
    set(product, "F_Remark", row.remark);
    set(product, "F_Model", row.model);
    set(product, "F_Code", row.code);
    set(product, "F_Label", row.label);
    set(product, "F_Parent_BOM_ID", CString());
    set(product, "F_IsSecondary", CString(row.secondary ? u"1" : u"0"));
}

} // namespace

CString MakeCabinetXml(const CString& nodeId, const CString& name, int revision, const std::vector<CentreRow>& rows) {
    pugi::xml_document document;
    pugi::xml_node cabinet = document.append_child("cabinet");
    set(cabinet, "ID", nodeId);
    set(cabinet, "Name", name);
    set(cabinet, "Revision", CString(std::to_string(revision)));
    for (const bool secondary : {false, true})
        for (const CentreRow& row : rows)
            if (row.secondary == secondary) appendProduct(cabinet, row);
    return printed(document);
}

CString MakeDataSchemaXml() {
    pugi::xml_document document;
    pugi::xml_node dataSet = document.append_child("NewDataSet");
    pugi::xml_node schema = dataSet.append_child("xs:schema");
    schema.append_attribute("id").set_value("NewDataSet");
    schema.append_attribute("xmlns:xs").set_value("http://www.w3.org/2001/XMLSchema");
    pugi::xml_node product = schema.append_child("xs:element");
    product.append_attribute("name").set_value("product");
    pugi::xml_node type = product.append_child("xs:complexType");
    for (const char* field : kProductFields) {
        pugi::xml_node attribute = type.append_child("xs:attribute");
        attribute.append_attribute("name").set_value(field);
        attribute.append_attribute("type").set_value("xs:string");
    }
    return printed(document);
}
