// Turning the product elements of a cabinet block into BOM rows: child rows, accessories, secondary rows.
#include "exchange/HexmoorProducts.h"

#include "support/TextHelpers.h"

namespace {

// Server rows of a parent have short identifiers; a child row's identifier is 9 characters or longer.
constexpr int kChildRowIdLength = 9;

CString attributeOrEmpty(const CXmlElement& element, const char16_t* name) {
    return element.getAttribute(name).value_or(CString());
}

// An accessory row carries its model and count in the remark, as "model≌count"; its model holds the remark.
void applyAccessoryRule(BOM_INFO& row) {
    if (!row.m_strRowRemark.Contains(u"+附件")) return;
    CStringArray pieces;
    SplitString(row.m_strRowRemark, u"≌", pieces);
    if (pieces.GetSize() != 2) return;
    row.m_strRowRemark = row.m_strRowModel;
    row.m_strRowModel = pieces[0];
    row.m_strRowCount = pieces[1];
}

} // namespace

void HMXmlReadProducts(const CXmlDocument& document, HMProjectTree_INFO* node) {
    const CXmlNodeList products = document.selectNodes(u"/Hexmoor/Node/Boms/cabinet/product");
    if (!node) return;
    for (int i = 0; i < products.length(); ++i) {
        const CXmlElement product(products.item(i));
        BOM_INFO row;
        row.m_strRowCount = attributeOrEmpty(product, u"F_Numbers");
        row.m_strRowName = attributeOrEmpty(product, u"F_Name");
        row.m_strRowRemark = attributeOrEmpty(product, u"F_Remark");
        row.m_strRowModel = attributeOrEmpty(product, u"F_Model");
        if (attributeOrEmpty(product, u"F_Parent_BOM_ID").GetLength() >= kChildRowIdLength) continue;
        applyAccessoryRule(row);
        if (attributeOrEmpty(product, u"F_IsSecondary") == u"1")
            node->m_arrSecondaryBom.Add(row);
        else
            node->m_arrPrimaryBom.Add(row);
    }
}
