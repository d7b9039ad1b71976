// Opening drawings among the host's documents, host variables, and reading objects the way the
// extraction does.
#include "DxfFixtures.h"
#include "common/CapturedOutput.h"
#include "common/TempFolder.h"
#include "drawing/DrawingReads.h"
#include "drawing/access/QxDwgObjects.h"
#include "drawing/access/QxDwgOpen.h"
#include "drawing/access/QxHostCalls.h"
#include "drawing/dxf/DxfReader.h"
#include "platform/host/HostVariables.h"

#include <gtest/gtest.h>

namespace {

class DrawingAccessTest : public testing::Test {
protected:
    void SetUp() override {
        acDocManagerPtr()->reset();
        ResetHostVariables();
        ASSERT_TRUE(QxFs::ReadBytes(FixturePath("sample_r2018.dxf"), m_dxf));
        m_folder.writeFile("a/Primary.dwg", m_dxf);
        m_folder.writeFile("b/primary.dwg", m_dxf);
    }
    void TearDown() override {
        acDocManagerPtr()->reset();
        ResetHostVariables();
    }
    CString path(const char16_t* relative) const { return m_folder.logic() + relative; }

    std::string m_dxf;
    TempFolder m_folder;
};

} // namespace

TEST_F(DrawingAccessTest, OpenDwgDatabaseHasThreeOutcomesAndOtherDocumentsAreFoundAndActivated) {
    AcApDocument* untitled = acDocManagerPtr()->curDocument();
    ASSERT_NE(untitled, nullptr);
    EXPECT_EQ(untitled->fileName(), u"Drawing1.dwg");
    AcDbDatabase* db = nullptr;
    EXPECT_FALSE(QxOpenDwgDatabase(path(u"a\\missing.dwg"), 1, db));
    EXPECT_EQ(db, nullptr);

    ASSERT_TRUE(QxOpenDwgDatabase(path(u"a\\Primary.dwg"), 1, db));
    ASSERT_NE(db, nullptr);
    EXPECT_EQ(EntitiesOf(db->modelSpaceId()).size(), 8u);
    delete db;

    // Open in a document: its database comes back and the caller owns nothing.
    AcApDocument* document = acDocManagerPtr()->openDocument(path(u"a\\Primary.dwg"));
    ASSERT_EQ(acDocManagerPtr()->curDocument(), document);
    EXPECT_FALSE(QxOpenDwgDatabase(path(u"A\\PRIMARY.DWG"), 1, db));
    EXPECT_EQ(db, document->database());
    // Mode 0 compares file names alone: another folder's drawing of that name is the document's.
    EXPECT_FALSE(QxOpenDwgDatabase(path(u"b\\primary.dwg"), 0, db));
    EXPECT_EQ(db, document->database());
    EXPECT_TRUE(QxOpenDwgDatabase(path(u"b\\primary.dwg"), 1, db));
    EXPECT_NE(db, document->database());
    delete db;

    QxDwgDatabase scoped(path(u"b\\primary.dwg"), 1);
    EXPECT_TRUE(scoped.isSideDatabase());
    EXPECT_TRUE(scoped);

    // The document is found by its path; the other one is activated by its name.
    EXPECT_TRUE(QxIsDwgOpen(path(u"a\\primary.DWG")));
    EXPECT_FALSE(QxIsDwgOpen(path(u"b\\primary.dwg")));

    AcApDocument* found = nullptr;
    EXPECT_FALSE(QxFindOtherDocument(path(u"a\\Primary.dwg"), 1, found));  // it is the current one
    QxActivateDwg(u"Drawing1.dwg");
    EXPECT_EQ(acDocManagerPtr()->curDocument(), untitled);
    EXPECT_EQ(acDocManagerPtr()->mdiActiveDocument(), untitled);
    EXPECT_TRUE(QxFindOtherDocument(path(u"a\\Primary.dwg"), 1, found));
    EXPECT_EQ(found, document);
    EXPECT_TRUE(QxFindOtherDocument(u"X:\\elsewhere\\PRIMARY.dwg", 0, found));

    QxSetVarInt(u"SDI", 1);
    found = nullptr;
    EXPECT_FALSE(QxFindOtherDocument(path(u"a\\Primary.dwg"), 1, found));
    EXPECT_EQ(found, nullptr);
    QxActivateDwg(path(u"a\\Primary.dwg"));
    EXPECT_EQ(acDocManagerPtr()->curDocument(), untitled);  // SDI 1: nothing happens
}

// Within a command's read scope every drawing is read once; a document still wins over a kept database, a
// kept database changed since its read is read afresh, and nothing is kept past the scope.
TEST_F(DrawingAccessTest, AReadScopeReadsEachDrawingOnceAndKeepsNothingPastItself) {
    const std::uint64_t before = QxDrawingFilesRead();
    AcDbDatabase* kept = nullptr;
    {
        const CDrawingReadScope reads;
        const CDrawingReadScope inner;  // leaves everything to the outer scope
        for (int pass = 0; pass < 3; ++pass) {
            const QxDwgDatabase a(path(u"a\\Primary.dwg"), 1);
            const QxDwgDatabase missing(path(u"a\\missing.dwg"), 1);
            ASSERT_TRUE(a);
            EXPECT_FALSE(a.isSideDatabase());  // the scope's, not the caller's
            EXPECT_FALSE(missing);
            if (pass == 0) kept = a.get();
            EXPECT_EQ(a.get(), kept);
            EXPECT_EQ(EntitiesOf(a.get()->modelSpaceId()).size(), 8u);
        }
        EXPECT_EQ(QxDrawingFilesRead() - before, 1u);

        // Opening it in the editor takes the database read for the proof: still one read.
        QxOpenDwgInEditor(path(u"a\\Primary.dwg"), true, false, false);
        EXPECT_EQ(acDocManagerPtr()->curDocument()->database(), kept);
        EXPECT_EQ(QxDwgDatabase(path(u"A\\PRIMARY.DWG"), 1).get(), kept);
        EXPECT_EQ(QxDrawingFilesRead() - before, 1u);

        // A kept drawing that changed is read again from its file; whoever holds the changed one keeps it.
        const QxDwgDatabase b(path(u"b\\primary.dwg"), 1);
        b.get()->noteGeometryChange();
        const QxDwgDatabase again(path(u"b\\primary.dwg"), 1);
        EXPECT_NE(again.get(), b.get());
        EXPECT_EQ(EntitiesOf(b.get()->modelSpaceId()).size(), 8u);
        EXPECT_EQ(QxDrawingFilesRead() - before, 3u);
    }
    EXPECT_EQ(CDrawingReadScope::active(), nullptr);
    const QxDwgDatabase after(path(u"b\\primary.dwg"), 1);
    EXPECT_TRUE(after.isSideDatabase());
    EXPECT_EQ(QxDrawingFilesRead() - before, 4u);
}

TEST_F(DrawingAccessTest, OpenInEditorSavesInDefaultFormatAndKeepsBackupsByIsavebak) {
    CapturedOutput output;
    // An unreadable drawing is not opened, and no message is shown for it (checked with the rest below).
    m_folder.writeFile("a/binary.dwg", "AC1032 no dxf");
    QxOpenDwgInEditor(path(u"a\\binary.dwg"), true, true, true);
    EXPECT_FALSE(QxIsDwgOpen(path(u"a\\binary.dwg")));
    EXPECT_EQ(acDocManagerPtr()->documentCount(), 1);

    QxOpenDwgInEditor(path(u"a\\Primary.dwg"), true, false, false);
    ASSERT_TRUE(QxIsDwgOpen(path(u"a\\Primary.dwg")));
    EXPECT_TRUE(acDocManagerPtr()->curDocument()->SentCommands().IsEmpty());

    acedSetEnv(u"DefaultFormatForSave", u"24");
    m_folder.writeFile("a/Primary.bak", "old");
    QxOpenDwgInEditor(path(u"a\\Primary.dwg"), false, true, false);
    const CStringArray& sent = acDocManagerPtr()->mdiActiveDocument()->SentCommands();
    EXPECT_EQ(sent, (CStringArray{u"setvar FILEDIA 0 ", u"setvar CMDECHO 0 ",
                                  u"saveas\n2004\n" + path(u"a\\Primary.dwg") + u"\ny\n", u"setvar CMDECHO 1 ",
                                  u"setvar FILEDIA 1 "}));
    int saveBackup = 0;
    ASSERT_TRUE(QxGetVarInt(u"ISAVEBAK", saveBackup));
    EXPECT_EQ(saveBackup, 1);
    EXPECT_TRUE(m_folder.exists("a/Primary.bak"));  // ISAVEBAK was 1: the backup stays

    // ISAVEBAK 0 is raised for the save, set back, and the backup goes. A format that is no number is 2007.
    QxSetVarInt(u"ISAVEBAK", 0);
    acedSetEnv(u"DefaultFormatForSave", u"sixty");
    QxOpenDwgInEditor(path(u"a\\Primary.dwg"), false, true, true);
    ASSERT_TRUE(QxGetVarInt(u"ISAVEBAK", saveBackup));
    EXPECT_EQ(saveBackup, 0);
    EXPECT_FALSE(m_folder.exists("a/Primary.bak"));
    EXPECT_FALSE(QxIsDwgOpen(path(u"a\\Primary.dwg")));  // closed
    EXPECT_TRUE(output.boxes.empty());

    acedSetEnv(u"DefaultFormatForSave", u"60");
    QxOpenDwgInEditor(path(u"a\\Primary.dwg"), true, true, false);
    EXPECT_EQ(acDocManagerPtr()->curDocument()->SentCommands()[2], u"saveas\n2007\n" + path(u"a\\Primary.dwg") + u"\ny\n");
}

TEST_F(DrawingAccessTest, LocksCommandsVariablesAndWorkingDatabase) {
    AcApDocument* document = acDocManagerPtr()->mdiActiveDocument();
    EXPECT_TRUE(QxLockCurDoc());
    EXPECT_EQ(document->lockCount(), 1);
    EXPECT_TRUE(QxUnlockCurDoc());
    EXPECT_FALSE(QxUnlockCurDoc());  // nothing left to unlock
    // One document: nothing to lock or unlock, and both succeed.
    QxSetVarInt(u"SDI", 1);
    EXPECT_TRUE(QxLockCurDoc());
    EXPECT_EQ(document->lockCount(), 0);
    EXPECT_TRUE(QxUnlockCurDoc());

    QxSendCommand(u"");
    QxSendCommand(u"xmmanage\n");
    const auto pending = acDocManagerPtr()->TakePendingCommands();
    ASSERT_EQ(pending.size(), 1u);
    EXPECT_EQ(pending[0].text, u"xmmanage\n");
    EXPECT_EQ(pending[0].document, document);
    EXPECT_TRUE(acDocManagerPtr()->TakePendingCommands().empty());

    int value = 0;
    EXPECT_FALSE(QxGetVarInt(u"NOSUCHVAR", value));
    EXPECT_FALSE(QxSetVarInt(u"NOSUCHVAR", 1));
    EXPECT_TRUE(QxSetVarInt(u"cmdecho", 0));
    EXPECT_TRUE(QxGetVarInt(u"CMDECHO", value));
    EXPECT_EQ(value, 0);

    EXPECT_EQ(acdbHostApplicationServices()->workingDatabase(), document->database());
}

TEST_F(DrawingAccessTest, ReadingObjectsAsTheExtractionDoes) {
    DrawingBuilder b;
    const AcDbObjectId refId = b.addInsert(b.defineBlock(u"*U12"), {});
    const AcDbObjectId mtextId = b.addMText(u"cell", {});
    b.addTextXrecord(refId, u" QX_CIRCUI1_BOMRECORD ", {u"型号", u"A"});
    AcDbDictionary* xdict = AcDbDictionary::cast(b.extensionDictionary(refId).objectUnchecked());
    AcDbObjectId plain;
    xdict->setAt(u"PLAIN", std::make_unique<AcDbDictionary>(), plain);
    auto* ref = AcDbBlockReference::cast(refId.objectUnchecked());

    AcDbObjectId id;
    EXPECT_FALSE(QxHandleToId(nullptr, u"1", id));
    // The chain trims entry names; an entry of another class, or an object without a dictionary, has none.
    resbuf* chain = nullptr;
    ASSERT_TRUE(QxGetXRecordChain(ref, u"qx_circui1_bomrecord", chain));
    acutRelRb(chain);
    EXPECT_FALSE(QxGetXRecordChain(ref, u"PLAIN", chain));
    EXPECT_FALSE(QxGetXRecordChain(AcDbMText::cast(mtextId.objectUnchecked()), u"OTHER", chain));
}
