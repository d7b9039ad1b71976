#include "DatabaseReads.h"
#include "common/CapturedOutput.h"
#include "common/TempFolder.h"
#include "support/Encoding.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

const std::string kAccessDir = std::string(QX_SHARED_TESTDATA_DIR) + "/access";

// The Access files written by Microsoft Access live beside the project, not in it.
class AccessFiles : public ::testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::is_directory(kAccessDir))
            GTEST_SKIP() << "Access test files not found: " << kAccessDir << " is absent";
    }

    static CString path(const std::string& name) { return QxFs::FromNative(kAccessDir + "/" + name); }

    static std::string bytesOf(const std::string& name) {
        std::ifstream in(kAccessDir + "/" + name, std::ios::binary);
        std::ostringstream out;
        out << in.rdbuf();
        return out.str();
    }
};

} // namespace

TEST_F(AccessFiles, Jet3AndAceFilesGiveTheirColumnsAfterTheKind) {
    for (const char* name : {"testV1997.mdb", "testV2007.accdb"}) {
        SCOPED_TRACE(name);
        COperateMdb db(path(name));
        ASSERT_TRUE(db.IsOpen());
        EXPECT_EQ(tablesOf(db), (Values{u"Table1", u"Table2", u"Table3", u"Table4"}));
        EXPECT_TRUE(db.TableExists(u"TABLE1"));
        EXPECT_FALSE(db.TableExists(u"MSysObjects"));  // system tables are not the user's
        const struct { const char16_t* field; int kind; Values values; } columns[] = {
            {u"A", QX_KIND_CHAR, {u"a", u"abcdefg"}},      {u"E", QX_KIND_INTEGER, {u"0", u"333333333"}},
            {u"D", QX_KIND_INTEGER, {u"0", u"222"}},       {u"F", QX_KIND_DOUBLE, {u"0.00", u"444.56"}},
            {u"I", QX_KIND_BOOLEAN, {u"0", u"1"}},
            {u"G", QX_KIND_DATE, {u"", u""}},  // a date has no text form: each row repeats the one before, the first is empty
            {u"NoSuchField", QX_KIND_CHAR, {kFailed}},
        };
        for (const auto& column : columns) EXPECT_EQ(columnOf(db, u"Table1", column.field, column.kind), column.values) << CString(column.field);
        EXPECT_EQ(columnOf(db, u"Nothing", u"A", QX_KIND_CHAR), Values{kFailed});
        EXPECT_EQ(columnOf(db, u"", u"A", QX_KIND_CHAR), Values{kFailed});
        EXPECT_EQ(fieldsOf(db, u"Table1"), (Values{u"A", u"B", u"C", u"D", u"E", u"F", u"G", u"H", u"I"}));
        EXPECT_EQ((std::vector<int>{kindOf(db, u"Table1", u"A"), kindOf(db, u"Table1", u"e"), kindOf(db, u"Table1", u"I")}),
                  (std::vector<int>{QX_KIND_VARWCHAR, QX_KIND_INTEGER, QX_KIND_BOOLEAN}));
        EXPECT_EQ((std::vector<int>{db.GetRecordCount(u"Table1"), db.GetRecordCount(u"Nothing")}), (std::vector<int>{2, -1}));
    }
}

TEST_F(AccessFiles, UnicodeTextComesOutInEveryScriptAndConditionsReadAsTheHostsProviderDoes) {
    COperateMdb db(path("testUnicodeCompV2003.mdb"));
    ASSERT_TRUE(db.IsOpen());
    const Values values = columnOf(db, u"Table", u"Unicode", QX_KIND_CHAR);
    ASSERT_EQ(values.size(), 8u);
    EXPECT_EQ((Values{values[1], values[2], values[3], values[4], values[6]}),
              (Values{u"ääkkösiä", u"Мир", u"\u03f0\u03b1\u1f76 \u03c4\u1f79\u03c4' \u1f10\u03b3\u1f7c \u039a\u1f7b\u03f0\u03bb\u03c9\u03c0\u03b1",
                      u"漢字仮名交じり文", u"ümlaut"}));
    // Conditions as the host's provider reads them: Like, text compared ignoring case.
    const CStringArray fields({u"Unicode"});
    EXPECT_EQ(whereOf(db, u"Table", u"ID", fields, CStringArray({u"мИР"})), Values{u"3"});
    EXPECT_EQ(whereOf(db, u"Table", u"ID", fields, CStringArray({u"%仮名%"})), Values{u"5"});
    EXPECT_EQ(rowsOf(db, u"Table", fields, CStringArray({u"_nly ascii%"})), Values{u"1|only ascii chars"});
    // A condition value with a lone quote fails as the formed statement does.
    for (const char16_t* value : {u"only ascii chars\"", u"\"", u"x\" OR \"1\"=\"1"}) {
        EXPECT_EQ(whereOf(db, u"Table", u"ID", fields, CStringArray({value})), Values{kFailed}) << CString(value);
        EXPECT_EQ(rowsOf(db, u"Table", fields, CStringArray({value})), Values{kFailed}) << CString(value);
    }
    // A doubled quote is one quote inside the literal: the statement stands, and no row holds a quote.
    EXPECT_EQ(whereOf(db, u"Table", u"ID", fields, CStringArray({u"only \"\"ascii%"})), Values{});
    EXPECT_EQ(whereOf(db, u"Table", u"ID", fields, CStringArray({u"only ascii%"})), Values{u"1"});
}

TEST_F(AccessFiles, Jet3TextIsReadInTheLegacyCodePageAndTheFileIsNeverChanged) {
    // Jet 3 keeps text as bytes of the writer's code page: put GB18030 bytes where the file has Latin ones.
    std::string bytes = bytesOf("testV1997.mdb");
    const std::string name = EncodeLegacy(u"工程名X");
    const std::string other = EncodeLegacy(u"Мирabc");
    ASSERT_EQ(name.size(), 7u);
    ASSERT_EQ(other.size(), 9u);
    const size_t at = bytes.find("abcdefghijklmnop");
    ASSERT_NE(at, std::string::npos);
    bytes.replace(at, 7, name);
    bytes.replace(at + 7, 9, other);
    TempFolder folder;
    folder.writeFile("cn.mdb", bytes);

    COperateMdb db(folder.logic() + u"cn.mdb");
    ASSERT_TRUE(db.IsOpen());
    EXPECT_EQ(columnOf(db, u"Table1", u"A", QX_KIND_CHAR), (Values{u"a", u"工程名X"}));
    EXPECT_EQ(columnOf(db, u"Table1", u"B", QX_KIND_CHAR), (Values{u"b", u"Мирabc"}));

    // Access files are never changed.
    CapturedOutput output;
    const CStringArray fields({u"A"});
    const CStringArray values({u"x"});
    const CKindArray kinds({QX_KIND_CHAR});
    const CArray<int> lengths({10});
    const std::vector<bool> changed = {
        db.InsertRecord(u"Table1", fields, values, kinds), db.DeleteRecords(u"Table1", fields, values, kinds),
        db.UpdateRecords(u"Table1", fields, values, kinds, fields, values, kinds),
        db.CreateTable(u"New", fields, kinds, lengths), db.DropTable(u"Table2"), db.ExecuteSql(u"DELETE FROM Table1")};
    EXPECT_EQ(changed, std::vector<bool>(6, false));
    EXPECT_TRUE(output.boxes.empty());
    EXPECT_EQ(folder.readFile("cn.mdb"), bytes);
    EXPECT_EQ(db.GetRecordCount(u"Table1"), 2);
}

TEST_F(AccessFiles, CutOrDamagedFilesGiveNothingAndDoNotCrash) {
    const std::string whole = bytesOf("testV1997.mdb");
    TempFolder folder;
    CapturedOutput output;
    // Cut inside a page, cut at page boundaries, and pages overwritten with noise.
    std::vector<std::string> damaged = {whole.substr(0, 100000), whole.substr(0, 4096), whole.substr(0, 40960)};
    std::string noisy = whole;
    for (size_t i = 2048; i < noisy.size(); i += 7) noisy[i] = static_cast<char>(i * 31);
    damaged.push_back(noisy);
    for (size_t k = 0; k < damaged.size(); ++k) {
        SCOPED_TRACE(k);
        folder.writeFile("bad.mdb", damaged[k]);
        COperateMdb db(folder.logic() + u"bad.mdb");
        CStringArray values;
        if (db.IsOpen()) {
            CStringArray tables;
            db.GetTableNames(tables);
            EXPECT_LE(tables.GetSize(), 4);
            db.GetFieldValues(u"Table1", u"A", values, QX_KIND_CHAR, false);
            EXPECT_LE(values.GetSize(), 2);
        } else {
            EXPECT_FALSE(db.GetFieldValues(u"Table1", u"A", values, QX_KIND_CHAR, false));
            EXPECT_TRUE(values.IsEmpty());
        }
    }
    // A file cut inside a page is never taken for a database.
    folder.writeFile("bad.mdb", damaged[0]);
    EXPECT_FALSE(COperateMdb(folder.logic() + u"bad.mdb").IsOpen());
    EXPECT_EQ(output.printed, CString());
}

