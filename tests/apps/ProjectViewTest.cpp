// qxinspect: the dry run of a submit on the assembly tests' substation, as JSON, CSV and a workbook; a drawing.
#include "TextChecks.h"
#include "common/ShellRun.h"
#include "common/TempFolder.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <string>

namespace {

using InspectRun = ShellRun;

std::string fixture(const std::string& name) {
    std::string bytes;
    QxFs::ReadBytes(QxFs::FromNative(std::string(QX_TEST_DATA_DIR) + "/assembly/" + name), bytes);
    return bytes;
}

std::string devicePrj(const std::string& cabinetNo) {
    return "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n柜编号\r\n" + cabinetNo +
           "\r\n$END_ONE_NOTE\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF";
}

class ProjectView : public testing::Test {
protected:
    // Station: the primary diagram with its secondary drawings, and devices D1 (K02, with its own drawing)
    // and the given second device.
    void layOut(const std::string& secondName, const std::string& secondCabinets) {
        folder.writeFile("Station/Station.itm", "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
        folder.writeFile("Station/一次系统图.dwg", fixture("primary.dxf"));
        for (const char* n : {"1", "2", "3"})
            folder.writeFile(std::string("Station/Secondary/S") + n + ".dwg", fixture(std::string("sec_s") + n + ".dxf"));
        folder.writeFile("Station/D1/D1.prj", devicePrj("K02"));
        folder.writeFile("Station/D1/A.dwg", fixture("device_a.dxf"));
        folder.writeFile("Station/" + secondName + "/" + secondName + ".prj", devicePrj(secondCabinets));
    }
    InspectRun inspect(const std::string& arguments, const char* view = "project") {
        return RunShellCommand(std::string(QX_BINARY_DIR) + "/bin/qxinspect " + view + " " + arguments + " 2>'" +
                               folder.native() + "/err.txt'");
    }
    // Station as the cloud knows it: its document and D1's, whose cabinet number is K02.
    void writeDocuments() {
        folder.writeFile("Station/Hexmoor.xml",
                         "<?xml version=\"1.0\"?><Hexmoor><Node Name=\"Station\" ID=\"P-1\" Type=\"\"><DataSchema><NewDataSet/>"
                         "</DataSchema><SubNodes><SubNode Name=\"D1\" ID=\"d-1\" Type=\"0\"/></SubNodes></Node></Hexmoor>");
        folder.writeFile("Station/D1/Hexmoor.xml",
                         "<?xml version=\"1.0\"?><Hexmoor><Node Name=\"D1\" ID=\"d-1\" Type=\"0\" CirNo=\"K02\" CirName=\"\" "
                         "CirType=\"\" CirSize=\"\"><DataSchema><NewDataSet/></DataSchema></Node></Hexmoor>");
    }
    std::string itm() const { return "'" + folder.native() + "/Station/Station.itm'"; }
    // Every file below Station with its size: what a read-only view must leave as it was.
    std::string listing() {
        return RunShellCommand("cd '" + folder.native() + "/Station' && find . -printf '%p %s\\n' | sort").out;
    }

    // The JSON view of Station, which must succeed and leave every file as it was.
    nlohmann::json view() {
        const std::string before = listing();
        const InspectRun run = inspect(itm());
        EXPECT_EQ(run.status, 0);
        EXPECT_EQ(listing(), before);
        return nlohmann::json::parse(run.out);
    }

    TempFolder folder;
};

} // namespace

TEST_F(ProjectView, ALocalProjectShowsWhatHMItmSubmitWouldSendAndWhyNot) {
    layOut("D2", "K03,K04");
    const auto document = view();
    ASSERT_EQ(document["devices"].size(), 2u);
    const auto& d1 = document["devices"][0];
    EXPECT_EQ((std::vector<nlohmann::json>{document["command"], d1["path"], d1["m_arrPrimaryBom"][0]["m_strRowName"],
                                           d1["m_arrPrimaryBom"][0]["m_strRowCount"], document["devices"][1]["m_nCabCount"],
                                           document["g_bBomCheckFailed"], document["wouldSend"], document["whyNot"]}),
              (std::vector<nlohmann::json>{"HMItmSubmit", "D1", "N1", "3", 2, true, false, "a cabinet check failed"}));
    ASSERT_EQ(document["messages"].size(), 1u);
    expectShows(document["messages"][0].get<std::string>(), {"屏柜 K03 和屏柜 K04"});
}

// The device view builds the node as the commands do; once the cloud knows the project, both views read
// it through its documents, as HMBomSubmit reads it.
TEST_F(ProjectView, AProjectTheCloudKnowsIsReadThroughItsDocumentsAsHMBomSubmitReadsIt) {
    layOut("D2", "K03");
    // A note block without its value line gives an empty value, as the folder walk reads it.
    folder.writeFile("Station/D2/D2.prj", "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n柜编号\r\n$END_ONE_NOTE\r\n"
                                          "$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF");
    const InspectRun local = inspect("'" + folder.native() + "/Station/D2/D2.prj'", "device");
    ASSERT_EQ(local.status, 0);
    EXPECT_EQ(nlohmann::json::parse(local.out)["m_strCirNo"], "");

    writeDocuments();
    const auto document = view();
    ASSERT_EQ(document["devices"].size(), 1u);  // D2 is no node of the cloud's project
    const auto& d1 = document["devices"][0];
    EXPECT_EQ((std::vector<nlohmann::json>{document["command"], document["m_strID"], d1["m_strID"],
                                           d1["m_arrPrimaryBom"][0]["m_strRowCode"], document["wouldSend"],
                                           document["whyNot"]}),
              (std::vector<nlohmann::json>{"HMBomSubmit", "P-1", "d-1", "E1", true, nullptr}));
    // The device's own document names its cabinet, not the .prj.
    folder.writeFile("Station/D1/D1.prj", devicePrj("K03"));
    const InspectRun known = inspect("'" + folder.native() + "/Station/D1/D1.prj'", "device");
    ASSERT_EQ(known.status, 0);
    const auto device = nlohmann::json::parse(known.out);
    EXPECT_EQ((std::vector<nlohmann::json>{device["m_strID"], device["m_strCirNo"],
                                           device["m_arrPrimaryBom"][0]["m_strRowName"]}),
              (std::vector<nlohmann::json>{"d-1", "K02", "N1"}));
}

TEST_F(ProjectView, WorkbookHasASummaryAndOneSheetPerDeviceNamedAsExcelAllows) {
    layOut("History", "K03,K03");  // one group named twice: two identical cabinets; a name Excel reserves
    // Two names that Excel takes for one, as it ignores case beyond ASCII.
    for (const std::string name : {"Ärger", "ärger"}) folder.writeFile("Station/" + name + "/" + name + ".prj", devicePrj("K03"));
    const std::string book = folder.native() + "/bom.xlsx";
    ASSERT_EQ(inspect(itm() + " --xlsx '" + book + "'").status, 0);
    // Each sheet's rows, cells joined by "|", through Python's own zip reader.
    const std::string script =
        "import re, sys, zipfile\n"
        "z = zipfile.ZipFile(sys.argv[1])\n"
        "strings = re.findall(r'<t[^>]*>([^<]*)</t>', z.read('xl/sharedStrings.xml').decode())\n"
        "names = re.findall(r'<sheet name=\"([^\"]*)\"', z.read('xl/workbook.xml').decode())\n"
        "for i, name in enumerate(names):\n"
        "    sheet = z.read('xl/worksheets/sheet%d.xml' % (i + 1)).decode()\n"
        "    for row in re.findall(r'<row[^>]*>(.*?)</row>', sheet):\n"
        "        cells = []\n"
        "        for attributes, value in re.findall(r'<c ([^>]*)><v>([^<]*)</v></c>', row):\n"
        "            cells.append(strings[int(value)] if 't=\"s\"' in attributes else value)\n"
        "        print(name + ':' + '|'.join(cells))\n"
        "folded = [n.casefold() for n in names]\n"
        "print('names', len(names), 'distinct', len(set(folded)), 'history' in folded)\n";
    folder.writeFile("sheets.py", script);
    const InspectRun read = RunShellCommand("/usr/bin/python3 '" + folder.native() + "/sheets.py' '" + book + "'");
    ASSERT_EQ(read.status, 0) << read.out;
    // 指示灯 is 1 a cabinet: 2 for History's two cabinets and 1 for each of the others.
    expectShows(read.out, {"Summary:name|model|code|count|devices\n", "Summary:指示灯|AD16|L1|4|3\n", "Summary:N1|X1|E1|3|1\n",
                           "D1:primary|N1|X1|3|E1\n", "History (2):primary|指示灯|AD16|1|L1\n", "\nnames 5 distinct 5 False\n"});
}

TEST_F(ProjectView, InputsThatCannotBeUsedAreRefused) {
    layOut("D2", "K03");
    EXPECT_EQ(inspect("'" + folder.native() + "/Station/D1/D1.prj'").status, 1);
    EXPECT_EQ(inspect("'" + folder.native() + "/Station/Missing.itm'").status, 1);
    EXPECT_EQ(inspect(itm() + " --csv --xlsx x.xlsx").status, 2);
    // A workbook whose folder is missing is not written, and nothing is left behind.
    EXPECT_EQ(inspect(itm() + " --xlsx '" + folder.native() + "/no/such/bom.xlsx'").status, 1);
    EXPECT_FALSE(folder.exists("no"));
    expectShows(folder.readFile("err.txt"), {"bom.xlsx"});
}

// CSV: one line per row with quoted fields; a long walk shows one line per device only on a terminal.
TEST_F(ProjectView, CsvHasOneLinePerRowAndTheWalkShowsItsProgressOnlyOnATerminal) {
    layOut("D,\"2", "K03");
    const InspectRun run = inspect(itm() + " --csv");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(run.out.rfind("device,kind,label,name,model,count,remark,code\n", 0), 0u);
    expectShows(run.out, {"\nD1,primary,,N1,X1,3,,E1\n", "\nD1,secondary,1KA,继电器,RX-1,2,,R1\n",
                          "\n\"D,\"\"2\",primary,,指示灯,AD16,1,,L1\n"});
    // Standard error is a file: no progress lines among the messages.
    expectNever(folder.readFile("err.txt"), {"reading its drawings"});
    // Under a pseudo-terminal (script), one line for each device.
    const std::string command = "script -qec \"" + std::string(QX_BINARY_DIR) + "/bin/qxinspect project " + itm() +
                                " --csv >/dev/null\" /dev/null";
    expectShows(RunShellCommand(command).out, {"device D1: reading its drawings", "2: reading its drawings"});
}

TEST(Qxinspect, NamesTheDrawingByItsPathInTheMachinesOwnForm) {
    const std::string file = std::string(QX_TEST_DATA_DIR) + "/dxf/sample_r2018.dxf";
    const InspectRun run = RunShellCommand(std::string(QX_BINARY_DIR) + "/bin/qxinspect drawing '" + file + "' 2>/dev/null");
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(nlohmann::json::parse(run.out)["file"], file);
}
