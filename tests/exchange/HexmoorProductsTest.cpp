// BOM rows from the product elements of a device's cabinet block.
#include "HexmoorTestSupport.h"

#include <vector>

using namespace hexmoor_test;

namespace {

// Writes a device whose cabinet holds the given products, in memory, and reads its rows as the exports do.
void readProducts(const CString& products, HMProjectTree_INFO& rows) {
    auto device = makeNode(u"K", u"D", u"0");
    device->m_strBoms = CString(u"<cabinet>") + products + u"</cabinet>";
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlWriteNode(document, device.get());
    HMXmlReadProducts(document, &rows);
}

std::vector<BOM_INFO> listOf(const BomRows& rows) { return {rows.begin(), rows.end()}; }

std::vector<CString> namesOf(const BomRows& rows) {
    std::vector<CString> names;
    for (const BOM_INFO& r : rows) names.push_back(r.m_strRowName);
    return names;
}

BOM_INFO row(const CString& name, const CString& model, const CString& count, const CString& remark) {
    return BOM_INFO{CString(), name, model, count, remark, CString()};
}

} // namespace

TEST(HexmoorProducts, ChildRowsGoByTheLengthOfTheParentIdAlone) {
    HMProjectTree_INFO rows;
    readProducts(u"<product F_Name='eight' F_Model='m' F_Numbers='1' F_Remark='' F_Parent_BOM_ID='12345678' F_IsSecondary='0'/>"
                 u"<product F_Name='nine' F_Model='m' F_Numbers='1' F_Remark='' F_Parent_BOM_ID='123456789' F_IsSecondary='0'/>"
                 u"<product F_Name='chinese eight' F_Parent_BOM_ID='一二三四五六七八'/>"
                 u"<product F_Name='empty' F_Parent_BOM_ID=''/>"
                 u"<product F_Name='absent'/>"
                 u"<product F_Name='long child' F_Remark='型≌2+附件' F_Parent_BOM_ID='abcdefghijk' F_IsSecondary='1'/>",
                 rows);
    EXPECT_EQ(namesOf(rows.m_arrPrimaryBom), (std::vector<CString>{u"eight", u"chinese eight", u"empty", u"absent"}));
    EXPECT_TRUE(rows.m_arrSecondaryBom.IsEmpty());
}

TEST(HexmoorProducts, AccessoryRowsTakeModelAndCountFromTheRemark) {
    HMProjectTree_INFO rows;
    readProducts(u"<product F_Name='a' F_Model='原型号' F_Numbers='1' F_Remark='新型号≌2+附件'/>"
                 u"<product F_Name='b' F_Model='m' F_Numbers='1' F_Remark='+附件≌'/>"
                 u"<product F_Name='c' F_Model='m' F_Numbers='1' F_Remark='带+附件无分隔'/>"
                 u"<product F_Name='d' F_Model='m' F_Numbers='1' F_Remark='x≌+附件≌3'/>"
                 u"<product F_Name='e' F_Model='m' F_Numbers='1' F_Remark='x≌3'/>"
                 u"<product F_Name='f' F_Model='m' F_Numbers='1' F_Remark='附件≌3'/>",
                 rows);
    EXPECT_EQ(listOf(rows.m_arrPrimaryBom),
              (std::vector<BOM_INFO>{row(u"a", u"新型号", u"2+附件", u"原型号"), row(u"b", u"+附件", u"", u"m"),
                                     row(u"c", u"m", u"1", u"带+附件无分隔"), row(u"d", u"m", u"1", u"x≌+附件≌3"),
                                     row(u"e", u"m", u"1", u"x≌3"), row(u"f", u"m", u"1", u"附件≌3")}));
}

TEST(HexmoorProducts, OnlyAnExactOneMakesASecondaryRow) {
    HMProjectTree_INFO rows;
    readProducts(u"<product F_Name='s' F_IsSecondary='1' F_Numbers='abc' F_Model='M' F_Remark='R' F_Other='x'/>"
                 u"<product F_Name='p0' F_IsSecondary='0'/><product F_Name='p1' F_IsSecondary=' 1'/>"
                 u"<product F_Name='p2' F_IsSecondary='true'/><product F_Name='p3' F_IsSecondary=''/>"
                 u"<product F_Name='p4'/><product F_IsSecondary='1' F_Name='s2'/>",
                 rows);
    EXPECT_EQ(listOf(rows.m_arrSecondaryBom), (std::vector<BOM_INFO>{row(u"s", u"M", u"abc", u"R"), row(u"s2", u"", u"", u"")}));
    EXPECT_EQ(namesOf(rows.m_arrPrimaryBom), (std::vector<CString>{u"p0", u"p1", u"p2", u"p3", u"p4"}));
}

TEST(HexmoorProducts, RowsAppendAndNothingIsReadWithoutProducts) {
    TempFolder folder;
    auto device = makeNode(u"K", u"D", u"0");
    device->m_strBoms = u"<cabinet><product F_Name='n' F_Model='m' F_Numbers='2' F_Remark='r' F_IsSecondary='1'/></cabinet>";
    device->m_strDataSchema = u"<NewDataSet/>";
    HMProjectTree_INFO read;
    saveAndRead(folder, writtenText(*device), read);  // reads the products once
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlLoadFile(document, folder.logic() + u"Hexmoor.xml");
    HMXmlReadProducts(document, &read);
    ASSERT_EQ(read.m_arrSecondaryBom.GetSize(), 2);
    EXPECT_EQ(read.m_arrSecondaryBom[0], read.m_arrSecondaryBom[1]);

    HMProjectTree_INFO none;
    readProducts(u"", none);
    auto other = makeNode(u"K", u"D", u"0");
    other->m_strBoms = u"<other><product F_Name='x'/></other>";
    CXmlDocument otherDocument;
    HMXmlCreateDocument(otherDocument);
    HMXmlWriteNode(otherDocument, other.get());
    HMXmlReadProducts(otherDocument, &none);
    EXPECT_TRUE(none.m_arrPrimaryBom.IsEmpty());
    EXPECT_TRUE(none.m_arrSecondaryBom.IsEmpty());

    // Without a document the DOM's error passes to the caller.
    CXmlDocument never;
    EXPECT_THROW(HMXmlReadProducts(never, &none), CXmlDomError);
}
