#include "common/TempFolder.h"
#include "project/ProjectFiles.h"
#include "support/Encoding.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace {

const std::string kSkeleton =
    "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF";

// The bytes of a rewritten file: legacy code page, every line ended by CR LF.
std::string legacyLines(std::initializer_list<const char16_t*> lines) {
    std::u16string text;
    for (const char16_t* line : lines) text += std::u16string(line) + u"\r\n";
    return EncodeLegacy(text);
}

PrjNoteList notes(std::initializer_list<STRUCT_PRJ_NOTE> items) {
    PrjNoteList list;
    for (const STRUCT_PRJ_NOTE& note : items) list.Add(note);
    return list;
}

struct Device {
    HMProjectTree_INFO node;
    Device(const TempFolder& folder, const char16_t* name) {
        node.m_strName = name;
        node.m_strType = u"0";
        node.m_strPath = folder.logic();
        node.m_strCirNo = u"K1,K2";
        node.m_strCirName = u"进线柜";
        node.m_strCirType = u"KYN28";
        node.m_strCirSize = u"800*1500*2300";
    }
};

} // namespace

TEST(ProjectFiles, SkeletonIsFiveLinesWithoutFinalLineEndOrByteOrderMark) {
    TempFolder folder;
    WriteProjectSkeleton(folder.logic() + u"项目.itm");
    EXPECT_EQ(folder.readFile("项目.itm"), kSkeleton);

    WriteProjectSkeleton(folder.logic() + u"missing\\a.prj");  // no folder: nothing, and no crash
    EXPECT_FALSE(folder.exists("missing"));
}

TEST(ProjectFiles, NotesGoDirectlyUnderTheFirstLineInListOrder) {
    TempFolder folder;
    const CString path = folder.logic() + u"p.itm";
    folder.writeFile("p.itm", "$begin note of prj\r\n\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\nx = 1\r\n"
                              "$END CONTENT OF PRJ\r\n$EOF");
    ASSERT_TRUE(InsertNotes(path, notes({{u"工程名称", u""}, {u"设计单位", u"华东院"}})));
    EXPECT_EQ(folder.readFile("p.itm"),
              legacyLines({u"$begin note of prj", u"$BEGIN_ONE_NOTE", u"工程名称", u"", u"$END_ONE_NOTE",
                           u"$BEGIN_ONE_NOTE", u"设计单位", u"华东院", u"$END_ONE_NOTE", u"$END NOTE OF PRJ",
                           u"$BEGIN CONTENT OF PRJ", u"x = 1", u"$END CONTENT OF PRJ", u"$EOF"}));

    // Earlier notes keep their empty value lines when more notes come in above them.
    ASSERT_TRUE(InsertNotes(path, notes({{u"工程编号", u"7"}})));
    STRUCT_PRJ_FILE file;
    ASSERT_TRUE(ReadProjectFile(path, file));
    ASSERT_EQ(file.m_arrNotes.GetSize(), 3);
    EXPECT_EQ(file.m_arrNotes[0], (STRUCT_PRJ_NOTE{u"工程编号", u"7"}));
    EXPECT_EQ(file.m_arrNotes[1], (STRUCT_PRJ_NOTE{u"工程名称", u""}));
    EXPECT_EQ(file.m_arrNotes[2], (STRUCT_PRJ_NOTE{u"设计单位", u"华东院"}));
    ASSERT_EQ(file.m_arrContent.GetSize(), 1);
    EXPECT_EQ(file.m_arrContent[0], CString(u"x = 1"));
}

TEST(ProjectFiles, NotesAreNotWrittenIntoFilesOfAnotherFormat) {
    TempFolder folder;
    folder.writeFile("a.prj", "something else\r\n$END NOTE OF PRJ\r\n");
    EXPECT_FALSE(InsertNotes(folder.logic() + u"a.prj", notes({{u"n", u"v"}})));
    EXPECT_EQ(folder.readFile("a.prj"), "something else\r\n$END NOTE OF PRJ\r\n");
    folder.writeFile("empty.prj", "");
    EXPECT_FALSE(InsertNotes(folder.logic() + u"empty.prj", notes({{u"n", u"v"}})));
    EXPECT_EQ(folder.readFile("empty.prj"), "");
    EXPECT_FALSE(InsertNotes(folder.logic() + u"none.prj", notes({{u"n", u"v"}})));
    EXPECT_FALSE(folder.exists("none.prj"));
}

TEST(ProjectFiles, DeviceNotesAreUpdatedInPlaceAndMissingOnesAddedBeforeTheEndMarker) {
    TempFolder folder;
    Device device(folder, u"K01");
    const CString path = folder.logic() + u"K01.prj";
    WriteProjectSkeleton(path);
    ASSERT_TRUE(InsertNotes(path, notes({{u"工程名称", u""}, {u"柜编号", u"old"}, {u"柜型号", u""}})));

    ASSERT_TRUE(UpdateDeviceNotes(&device.node));
    EXPECT_EQ(folder.readFile("K01.prj"),
              legacyLines({u"$BEGIN NOTE OF PRJ", u"$BEGIN_ONE_NOTE", u"工程名称", u"", u"$END_ONE_NOTE",
                           u"$BEGIN_ONE_NOTE", u"柜编号", u"K1,K2", u"$END_ONE_NOTE", u"$BEGIN_ONE_NOTE", u"柜型号",
                           u"KYN28", u"$END_ONE_NOTE", u"$BEGIN_ONE_NOTE", u"柜名称", u"进线柜", u"$END_ONE_NOTE",
                           u"$BEGIN_ONE_NOTE", u"柜体尺寸", u"800*1500*2300", u"$END_ONE_NOTE",
                           u"$END NOTE OF PRJ", u"$BEGIN CONTENT OF PRJ", u"$END CONTENT OF PRJ", u"$EOF"}));

    // A second update finds all four and only changes values; an emptied field stays an empty line.
    const std::string before = folder.readFile("K01.prj");
    device.node.m_strCirName = u"";
    ASSERT_TRUE(UpdateDeviceNotes(&device.node));
    STRUCT_PRJ_FILE file;
    ASSERT_TRUE(ReadProjectFile(path, file));
    ASSERT_EQ(file.m_arrNotes.GetSize(), 5);
    EXPECT_EQ(file.m_arrNotes[3], (STRUCT_PRJ_NOTE{u"柜名称", u""}));
    EXPECT_EQ(file.m_arrNotes[4], (STRUCT_PRJ_NOTE{u"柜体尺寸", u"800*1500*2300"}));
    EXPECT_EQ(folder.readFile("K01.prj").size(), before.size() - EncodeLegacy(u"进线柜").size());
}

TEST(ProjectFiles, DeviceNotesAcceptTheOtherSpellingAndRefuseFilesWithoutEndMarker) {
    TempFolder folder;
    Device device(folder, u"K02");
    // Written by another program: UTF-8, LF line ends, the closing markers in mixed case.
    folder.writeFile("K02.prj", "$BEGIN NOTE OF PRJ\n$BEGIN_ONE_NOTE\n柜体尺寸\n1\n$END_ONE_NOTE\n$End NOTE OF PRJ\n"
                                "$BEGIN CONTENT OF PRJ\n$End CONTENT OF PRJ\n$EOF\n");
    ASSERT_TRUE(UpdateDeviceNotes(&device.node));
    STRUCT_PRJ_FILE file;
    ASSERT_TRUE(ReadProjectFile(folder.logic() + u"K02.prj", file));
    ASSERT_EQ(file.m_arrNotes.GetSize(), 4);
    EXPECT_EQ(file.m_arrNotes[0], (STRUCT_PRJ_NOTE{u"柜体尺寸", u"800*1500*2300"}));
    EXPECT_EQ(file.m_arrNotes[1].m_strName, CString(u"柜编号"));
    EXPECT_EQ(file.m_arrNotes[3].m_strName, CString(u"柜型号"));
    const std::string text = folder.readFile("K02.prj");
    EXPECT_NE(text.find(EncodeLegacy(u"$END_ONE_NOTE\r\n$End NOTE OF PRJ\r\n")), std::string::npos);

    const std::string noMarker = "$BEGIN NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF";
    folder.writeFile("K02.prj", noMarker);
    EXPECT_FALSE(UpdateDeviceNotes(&device.node));
    EXPECT_EQ(folder.readFile("K02.prj"), noMarker);

    // Not a device, or no file: nothing is made.
    device.node.m_strName = u"K03";
    EXPECT_FALSE(UpdateDeviceNotes(&device.node));
    EXPECT_FALSE(folder.exists("K03.prj"));
    device.node.m_strName = u"K02";
    device.node.m_strType = u"100";
    folder.writeFile("K02.prj", kSkeleton);
    EXPECT_FALSE(UpdateDeviceNotes(&device.node));
    EXPECT_EQ(folder.readFile("K02.prj"), kSkeleton);
    EXPECT_FALSE(UpdateDeviceNotes(nullptr));
}

TEST(ProjectFiles, ReaderTakesBothSpellingsAndRejectsOtherFiles) {
    TempFolder folder;
    folder.writeFile("a.itm", "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\nA\r\n$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\nB\r\nb\r\n"
                              "$END_ONE_NOTE\r\n$End NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\nline\r\n\r\n"
                              "$End CONTENT OF PRJ\r\nafter\r\n$EOF");
    STRUCT_PRJ_FILE file;
    ASSERT_TRUE(ReadProjectFile(folder.logic() + u"a.itm", file));
    ASSERT_EQ(file.m_arrNotes.GetSize(), 2);  // a block without its value line still counts, empty
    EXPECT_EQ(file.m_arrNotes[0], (STRUCT_PRJ_NOTE{u"A", u""}));
    EXPECT_EQ(file.m_arrNotes[1], (STRUCT_PRJ_NOTE{u"B", u"b"}));
    ASSERT_EQ(file.m_arrContent.GetSize(), 2);
    EXPECT_EQ(file.m_arrContent[0], CString(u"line"));

    folder.writeFile("b.itm", "\xEF\xBB\xBFnot a project\r\n");
    EXPECT_FALSE(ReadProjectFile(folder.logic() + u"b.itm", file));
    EXPECT_TRUE(file.m_arrNotes.IsEmpty());
    EXPECT_FALSE(ReadProjectFile(folder.logic() + u"c.itm", file));
}

TEST(ProjectFiles, FolderIsEmptyWithNothingButDotEntries) {
    TempFolder folder;
    EXPECT_TRUE(IsFolderEmpty(folder.logic() + u"gone\\*.*"));
    folder.makeFolder("p");
    EXPECT_TRUE(IsFolderEmpty(folder.logic() + u"p\\*.*"));
    folder.writeFile("p/.qxtmp-1-abcdef", "left by a rewrite that was killed");
    EXPECT_TRUE(IsFolderEmpty(folder.logic() + u"p\\*.*"));
    folder.makeFolder("p/sub");
    EXPECT_FALSE(IsFolderEmpty(folder.logic() + u"p\\*.*"));
    folder.writeFile("q/stray.txt", "");
    EXPECT_FALSE(IsFolderEmpty(folder.logic() + u"Q\\*.*"));
}

TEST(ProjectFiles, SubProjectsAndDevicesAreFolderFilesOfTheirOwnName) {
    TempFolder folder;
    folder.writeFile("P/P.itm", kSkeleton);
    folder.writeFile("P/b/B.PRJ", kSkeleton);
    folder.writeFile("P/a/a.prj", kSkeleton);
    folder.writeFile("P/s/S.Itm", kSkeleton);
    folder.writeFile("P/c/other.prj", kSkeleton);  // not named after its folder
    folder.writeFile("P/d.prj", kSkeleton);        // a file, not a folder
    const CString p = folder.logic() + u"P\\";

    CStringArray list;
    ASSERT_TRUE(ListDevices(p + u"p.ITM", list));
    ASSERT_EQ(list.GetSize(), 2);
    EXPECT_EQ(list[0], p + u"a\\a.prj");
    EXPECT_EQ(list[1], p + u"b\\b.prj");
    ASSERT_TRUE(ListSubProjects(p + u"P.itm", list));
    ASSERT_EQ(list.GetSize(), 1);
    EXPECT_EQ(list[0], p + u"s\\s.itm");

    // A project file moved into a folder of another name, or a device file, has no children.
    folder.writeFile("Q/P.itm", kSkeleton);
    folder.writeFile("Q/a/a.prj", kSkeleton);
    EXPECT_FALSE(ListDevices(folder.logic() + u"Q\\P.itm", list));
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_FALSE(ListSubProjects(p + u"a\\a.prj", list));
    EXPECT_FALSE(ListSubProjects(p + u"none\\none.itm", list));
}

TEST(ProjectFiles, DrawingsOfAProjectAreItsOwnThenEachDevicesButNoSubProjects) {
    TempFolder folder;
    folder.writeFile("P/P.itm", kSkeleton);
    folder.writeFile("P/main.dwg", "");
    folder.writeFile("P/notes.txt", "");
    folder.writeFile("P/K1/K1.prj", kSkeleton);
    folder.writeFile("P/K1/图纸.DWG", "");
    folder.writeFile("P/K1/wiring.dxf", "");  // a lone DXF is no drawing of the project
    folder.writeFile("P/K1/deeper/x.dwg", "");
    folder.writeFile("P/S/S.itm", kSkeleton);
    folder.writeFile("P/S/sub.dwg", "");
    const CString p = folder.logic() + u"P\\";

    CStringArray list;
    ListDrawingsOfFile(p + u"P.itm", list);
    ASSERT_EQ(list.GetSize(), 2);
    EXPECT_EQ(list[0], p + u"main.dwg");
    EXPECT_EQ(list[1], p + u"K1\\图纸.DWG");

    ListDrawingsOfFile(p + u"K1\\K1.PRJ", list);
    ASSERT_EQ(list.GetSize(), 1);
    EXPECT_EQ(list[0], p + u"K1\\图纸.DWG");

    ListDrawingsOfFile(p + u"notes.txt", list);
    EXPECT_TRUE(list.IsEmpty());
}

TEST(ProjectFiles, LineBreaksInValuesNeverBreakTheNotes) {
    TempFolder folder;
    Device device(folder, u"K04");
    const CString path = folder.logic() + u"K04.prj";
    WriteProjectSkeleton(path);
    ASSERT_TRUE(InsertNotes(path, notes({{u"工程名称", u"一期\r\n二期"}, {u"柜编号", u""}})));
    device.node.m_strCirName = u"A\r\n$END NOTE OF PRJ";  // as a cabinet name might come from the cloud
    device.node.m_strCirNo = u"K1\nK2";
    ASSERT_TRUE(UpdateDeviceNotes(&device.node));
    ASSERT_TRUE(UpdateDeviceNotes(&device.node));  // a second pass finds every note where the first put it

    STRUCT_PRJ_FILE file;
    ASSERT_TRUE(ReadProjectFile(path, file));
    ASSERT_EQ(file.m_arrNotes.GetSize(), 5);
    EXPECT_EQ(file.m_arrNotes[0], (STRUCT_PRJ_NOTE{u"工程名称", u"一期二期"}));
    EXPECT_EQ(file.m_arrNotes[1], (STRUCT_PRJ_NOTE{u"柜编号", u"K1K2"}));
    EXPECT_EQ(file.m_arrNotes[2], (STRUCT_PRJ_NOTE{u"柜名称", u"A$END NOTE OF PRJ"}));
    EXPECT_EQ(file.m_arrNotes[3], (STRUCT_PRJ_NOTE{u"柜型号", u"KYN28"}));
    EXPECT_EQ(file.m_arrNotes[4], (STRUCT_PRJ_NOTE{u"柜体尺寸", u"800*1500*2300"}));
}

TEST(ProjectFiles, ABlockCutShortByTheEndOfTheNotesKeepsThatEnd) {
    TempFolder folder;
    Device device(folder, u"K05");
    folder.writeFile("K05.prj", "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n" + EncodeLegacy(u"柜编号") +
                                    "\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\nkept\r\n$END CONTENT OF PRJ\r\n$EOF");
    ASSERT_TRUE(UpdateDeviceNotes(&device.node));
    STRUCT_PRJ_FILE file;
    ASSERT_TRUE(ReadProjectFile(folder.logic() + u"K05.prj", file));
    ASSERT_EQ(file.m_arrNotes.GetSize(), 4);
    EXPECT_EQ(file.m_arrNotes[0], (STRUCT_PRJ_NOTE{u"柜编号", u"K1,K2"}));
    EXPECT_EQ(file.m_arrNotes[3], (STRUCT_PRJ_NOTE{u"柜体尺寸", u"800*1500*2300"}));
    ASSERT_EQ(file.m_arrContent.GetSize(), 1);
    EXPECT_EQ(file.m_arrContent[0], CString(u"kept"));
}
