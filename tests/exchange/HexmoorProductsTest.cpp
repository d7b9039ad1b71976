// BOM rows from the product elements of a device's cabinet block.
#include "HexmoorTestSupport.h"

#include <string>
#include <utility>

using namespace hexmoor_test;

namespace {

// Writes a device with the given cabinet block, in memory, and reads its rows as the exports do.
void readProducts(const CString& block, HMProjectTree_INFO& rows) {
    auto device = makeNode(u"K", u"D", u"0");
    device->m_strBoms = block;
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlWriteNode(document, device.get());
    HMXmlReadProducts(document, &rows);
}

// The rows read from a cabinet of the products, a line each: "P" for a primary row or "S" for a secondary
// one, then the name, model, count and remark.
std::string rowsOf(const CString& products) {
    HMProjectTree_INFO rows;
    readProducts(u"<cabinet>" + products + u"</cabinet>", rows);
    std::string text;
    const auto add = [&text](const char* kind, const BomRows& list) {
        for (const BOM_INFO& r : list)
            text += kind + (r.m_strRowName + u"|" + r.m_strRowModel + u"|" + r.m_strRowCount + u"|").ToUtf8() +
                    r.m_strRowRemark.ToUtf8() + "\n";
    };
    add("P ", rows.m_arrPrimaryBom);
    add("S ", rows.m_arrSecondaryBom);
    return text;
}

} // namespace

TEST(HexmoorProducts, RowsByParentIdLengthAccessoryRemarkAndAnExactSecondaryOne) {
    const struct {
        const char* what;
        CString products;
        std::string rows;
    } cases[] = {
        {"child rows go by the length of the parent id alone",
         u"<product F_Name='eight' F_Model='m' F_Numbers='1' F_Remark='' F_Parent_BOM_ID='12345678' F_IsSecondary='0'/>"
         u"<product F_Name='nine' F_Model='m' F_Numbers='1' F_Remark='' F_Parent_BOM_ID='123456789' F_IsSecondary='0'/>"
         u"<product F_Name='chinese eight' F_Parent_BOM_ID='一二三四五六七八'/>"
         u"<product F_Name='empty' F_Parent_BOM_ID=''/><product F_Name='absent'/>"
         u"<product F_Name='long child' F_Remark='型≌2+附件' F_Parent_BOM_ID='abcdefghijk' F_IsSecondary='1'/>",
         "P eight|m|1|\nP chinese eight|||\nP empty|||\nP absent|||\n"},
        {"accessory rows take model and count from the remark",
         u"<product F_Name='a' F_Model='原型号' F_Numbers='1' F_Remark='新型号≌2+附件'/>"
         u"<product F_Name='b' F_Model='m' F_Numbers='1' F_Remark='+附件≌'/>"
         u"<product F_Name='c' F_Model='m' F_Numbers='1' F_Remark='带+附件无分隔'/>"
         u"<product F_Name='d' F_Model='m' F_Numbers='1' F_Remark='x≌+附件≌3'/>"
         u"<product F_Name='e' F_Model='m' F_Numbers='1' F_Remark='x≌3'/>"
         u"<product F_Name='f' F_Model='m' F_Numbers='1' F_Remark='附件≌3'/>",
         "P a|新型号|2+附件|原型号\nP b|+附件||m\nP c|m|1|带+附件无分隔\nP d|m|1|x≌+附件≌3\nP e|m|1|x≌3\nP f|m|1|附件≌3\n"},
        {"only an exact one makes a secondary row",
         u"<product F_Name='s' F_IsSecondary='1' F_Numbers='abc' F_Model='M' F_Remark='R' F_Other='x'/>"
         u"<product F_Name='p0' F_IsSecondary='0'/><product F_Name='p1' F_IsSecondary=' 1'/>"
         u"<product F_Name='p2' F_IsSecondary='true'/><product F_Name='p3' F_IsSecondary=''/>"
         u"<product F_Name='p4'/><product F_IsSecondary='1' F_Name='s2'/>",
         "P p0|||\nP p1|||\nP p2|||\nP p3|||\nP p4|||\nS s|M|abc|R\nS s2|||\n"},
        {"no products, no rows", u"", ""},
    };
    for (const auto& row : cases) EXPECT_EQ(rowsOf(row.products), row.rows) << row.what;
}

TEST(HexmoorProducts, RowsAppendAndNothingIsReadOutsideACabinet) {
    const CString block = u"<cabinet><product F_Name='n' F_Model='m' F_Numbers='2' F_IsSecondary='1'/></cabinet>";
    HMProjectTree_INFO read;
    readProducts(block, read);
    readProducts(block, read);
    ASSERT_EQ(read.m_arrSecondaryBom.GetSize(), 2);
    EXPECT_EQ(read.m_arrSecondaryBom[0], read.m_arrSecondaryBom[1]);

    HMProjectTree_INFO none;
    readProducts(u"<other><product F_Name='x'/></other>", none);
    EXPECT_TRUE(none.m_arrPrimaryBom.IsEmpty());
    EXPECT_TRUE(none.m_arrSecondaryBom.IsEmpty());

    // Without a document the DOM's error passes to the caller.
    CXmlDocument never;
    EXPECT_THROW(HMXmlReadProducts(never, &none), CXmlDomError);
}
