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

class ProjectFiles : public ::testing::Test {
protected:
    // A device K01 of this folder with all four cabinet fields set.
    ProjectFiles() {
        device.m_strName = u"K01";
        device.m_strType = u"0";
        device.m_strPath = folder.logic();
        device.m_strCirNo = u"K1,K2";
        device.m_strCirName = u"进线柜";
        device.m_strCirType = u"KYN28";
        device.m_strCirSize = u"800*1500*2300";
    }
    CString path(const char16_t* name) const { return folder.logic() + name; }
    // What the reader takes from a file: "name=value;" for each note, then " | " and the content lines.
    std::string readBack(const char16_t* name) const {
        STRUCT_PRJ_FILE file;
        if (!ReadProjectFile(path(name), file)) return "<not read>";
        CString text;
        for (const STRUCT_PRJ_NOTE& note : file.m_arrNotes) text += note.m_strName + u"=" + note.m_strValue + u";";
        text += u" |";
        for (const CString& line : file.m_arrContent) text += u" " + line;
        return text.ToUtf8();
    }
    std::string listText(const CStringArray& list) const {
        std::string text;
        for (const CString& item : list) text += item.Mid(folder.logic().GetLength()).ToUtf8() + ";";
        return text;
    }

    TempFolder folder;
    HMProjectTree_INFO device;
};

} // namespace

TEST_F(ProjectFiles, NotesGoDirectlyUnderTheFirstLineInListOrderAndOnlyIntoProjectFiles) {
    folder.writeFile("p.itm", "$begin note of prj\r\n\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\nx = 1\r\n"
                              "$END CONTENT OF PRJ\r\n$EOF");
    ASSERT_TRUE(InsertNotes(path(u"p.itm"), notes({{u"工程名称", u""}, {u"设计单位", u"华东院"}})));
    EXPECT_EQ(folder.readFile("p.itm"),
              legacyLines({u"$begin note of prj", u"$BEGIN_ONE_NOTE", u"工程名称", u"", u"$END_ONE_NOTE",
                           u"$BEGIN_ONE_NOTE", u"设计单位", u"华东院", u"$END_ONE_NOTE", u"$END NOTE OF PRJ",
                           u"$BEGIN CONTENT OF PRJ", u"x = 1", u"$END CONTENT OF PRJ", u"$EOF"}));
    // Earlier notes keep their empty value lines when more notes come in above them.
    ASSERT_TRUE(InsertNotes(path(u"p.itm"), notes({{u"工程编号", u"7"}})));
    EXPECT_EQ(readBack(u"p.itm"), "工程编号=7;工程名称=;设计单位=华东院; | x = 1");

    // Another format, an empty file, no file: nothing is written or made.
    for (const std::string& bytes : {std::string("something else\r\n$END NOTE OF PRJ\r\n"), std::string()}) {
        folder.writeFile("a.prj", bytes);
        EXPECT_FALSE(InsertNotes(path(u"a.prj"), notes({{u"n", u"v"}})));
        EXPECT_EQ(folder.readFile("a.prj"), bytes);
    }
    EXPECT_FALSE(InsertNotes(path(u"none.prj"), notes({{u"n", u"v"}})));
    EXPECT_FALSE(folder.exists("none.prj"));
}

TEST_F(ProjectFiles, DeviceNotesAreUpdatedInPlaceAndMissingOnesAddedBeforeTheEndMarker) {
    WriteProjectSkeleton(path(u"K01.prj"));
    ASSERT_TRUE(InsertNotes(path(u"K01.prj"), notes({{u"工程名称", u""}, {u"柜编号", u"old"}, {u"柜型号", u""}})));
    ASSERT_TRUE(UpdateDeviceNotes(&device));
    EXPECT_EQ(folder.readFile("K01.prj"),
              legacyLines({u"$BEGIN NOTE OF PRJ", u"$BEGIN_ONE_NOTE", u"工程名称", u"", u"$END_ONE_NOTE",
                           u"$BEGIN_ONE_NOTE", u"柜编号", u"K1,K2", u"$END_ONE_NOTE", u"$BEGIN_ONE_NOTE", u"柜型号",
                           u"KYN28", u"$END_ONE_NOTE", u"$BEGIN_ONE_NOTE", u"柜名称", u"进线柜", u"$END_ONE_NOTE",
                           u"$BEGIN_ONE_NOTE", u"柜体尺寸", u"800*1500*2300", u"$END_ONE_NOTE",
                           u"$END NOTE OF PRJ", u"$BEGIN CONTENT OF PRJ", u"$END CONTENT OF PRJ", u"$EOF"}));
}

TEST_F(ProjectFiles, DeviceNotesAcceptTheOtherSpellingAndRefuseFilesWithoutEndMarker) {
    // Written by another program: UTF-8, LF line ends, the closing markers in mixed case.
    folder.writeFile("K01.prj", "$BEGIN NOTE OF PRJ\n$BEGIN_ONE_NOTE\n柜体尺寸\n1\n$END_ONE_NOTE\n$End NOTE OF PRJ\n"
                                "$BEGIN CONTENT OF PRJ\n$End CONTENT OF PRJ\n$EOF\n");
    ASSERT_TRUE(UpdateDeviceNotes(&device));
    EXPECT_EQ(readBack(u"K01.prj"), "柜体尺寸=800*1500*2300;柜编号=K1,K2;柜名称=进线柜;柜型号=KYN28; |");
    EXPECT_NE(folder.readFile("K01.prj").find(EncodeLegacy(u"$END_ONE_NOTE\r\n$End NOTE OF PRJ\r\n")), std::string::npos);

    const std::string noMarker = "$BEGIN NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF";
    folder.writeFile("K01.prj", noMarker);
    EXPECT_FALSE(UpdateDeviceNotes(&device));
    EXPECT_EQ(folder.readFile("K01.prj"), noMarker);

    // Not a device: nothing is written.
    device.m_strType = u"100";
    folder.writeFile("K01.prj", kSkeleton);
    EXPECT_FALSE(UpdateDeviceNotes(&device));
    EXPECT_EQ(folder.readFile("K01.prj"), kSkeleton);
    EXPECT_FALSE(UpdateDeviceNotes(nullptr));
}

TEST_F(ProjectFiles, DeviceNotesSurviveLineBreaksInValuesAndBlocksCutShortByTheEndOfTheNotes) {
    WriteProjectSkeleton(path(u"K01.prj"));
    ASSERT_TRUE(InsertNotes(path(u"K01.prj"), notes({{u"工程名称", u"一期\r\n二期"}, {u"柜编号", u""}})));
    device.m_strCirName = u"A\r\n$END NOTE OF PRJ";  // as a cabinet name might come from the cloud
    device.m_strCirNo = u"K1\nK2";
    ASSERT_TRUE(UpdateDeviceNotes(&device));
    ASSERT_TRUE(UpdateDeviceNotes(&device));  // a second pass finds every note where the first put it
    EXPECT_EQ(readBack(u"K01.prj"),
              "工程名称=一期二期;柜编号=K1K2;柜名称=A$END NOTE OF PRJ;柜型号=KYN28;柜体尺寸=800*1500*2300; |");

    device.m_strCirNo = u"K1,K2";
    folder.writeFile("K01.prj", "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n" + EncodeLegacy(u"柜编号") +
                                    "\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\nkept\r\n$END CONTENT OF PRJ\r\n$EOF");
    ASSERT_TRUE(UpdateDeviceNotes(&device));
    EXPECT_EQ(readBack(u"K01.prj"), "柜编号=K1,K2;柜名称=A$END NOTE OF PRJ;柜型号=KYN28;柜体尺寸=800*1500*2300; | kept");
}

TEST_F(ProjectFiles, ReaderTakesBothSpellingsAndRejectsOtherFiles) {
    folder.writeFile("a.itm", "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\nA\r\n$END_ONE_NOTE\r\n$BEGIN_ONE_NOTE\r\nB\r\nb\r\n"
                              "$END_ONE_NOTE\r\n$End NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\nline\r\n\r\n"
                              "$End CONTENT OF PRJ\r\nafter\r\n$EOF");
    EXPECT_EQ(readBack(u"a.itm"), "A=;B=b; | line ");  // a block without its value line still counts, empty

    folder.writeFile("b.itm", "\xEF\xBB\xBFnot a project\r\n");
    STRUCT_PRJ_FILE file;
    file.m_arrNotes.Add({u"left", u"over"});
    EXPECT_FALSE(ReadProjectFile(path(u"b.itm"), file));
    EXPECT_TRUE(file.m_arrNotes.IsEmpty());
    EXPECT_EQ(readBack(u"c.itm"), "<not read>");
}

TEST_F(ProjectFiles, FolderIsEmptyWithNothingButDotEntries) {
    EXPECT_TRUE(IsFolderEmpty(path(u"gone\\*.*")));
    folder.makeFolder("p");
    EXPECT_TRUE(IsFolderEmpty(path(u"p\\*.*")));
    folder.writeFile("p/.qxtmp-1-abcdef", "left by a rewrite that was killed");
    EXPECT_TRUE(IsFolderEmpty(path(u"p\\*.*")));
    folder.makeFolder("p/sub");
    EXPECT_FALSE(IsFolderEmpty(path(u"p\\*.*")));
    folder.writeFile("q/stray.txt", "");
    EXPECT_FALSE(IsFolderEmpty(path(u"Q\\*.*")));
}

TEST_F(ProjectFiles, SubProjectsDevicesAndDrawingsAreFoundInTheFoldersOfTheirOwnName) {
    for (const char* file : {"P/P.itm", "P/b/B.PRJ", "P/a/a.prj", "P/s/S.Itm", "P/s/sub.dwg", "P/main.dwg", "P/notes.txt",
                             "P/c/other.prj",  // not named after its folder
                             "P/d.prj",        // a file, not a folder
                             "P/a/图纸.DWG", "P/a/wiring.dxf", "P/a/deeper/x.dwg", "Q/P.itm", "Q/a/a.prj"})
        folder.writeFile(file, kSkeleton);
    CStringArray list;
    ASSERT_TRUE(ListDevices(path(u"P\\p.ITM"), list));
    EXPECT_EQ(listText(list), "P\\a\\a.prj;P\\b\\b.prj;");
    ASSERT_TRUE(ListSubProjects(path(u"P\\P.itm"), list));
    EXPECT_EQ(listText(list), "P\\s\\s.itm;");
    // A project's own drawings, then each device's; a lone DXF and the sub-projects' drawings are not its own.
    ListDrawingsOfFile(path(u"P\\P.itm"), list);
    EXPECT_EQ(listText(list), "P\\main.dwg;P\\a\\图纸.DWG;");
    ListDrawingsOfFile(path(u"P\\a\\a.PRJ"), list);
    EXPECT_EQ(listText(list), "P\\a\\图纸.DWG;");
    ListDrawingsOfFile(path(u"P\\notes.txt"), list);
    EXPECT_TRUE(list.IsEmpty());

    // A project file moved into a folder of another name, or a device file, has no children.
    EXPECT_FALSE(ListDevices(path(u"Q\\P.itm"), list));
    EXPECT_TRUE(list.IsEmpty());
    EXPECT_FALSE(ListSubProjects(path(u"P\\a\\a.prj"), list));
    EXPECT_FALSE(ListSubProjects(path(u"P\\none\\none.itm"), list));
}
