// The project commands end to end: a temporary install folder with the demo's word list, the template
// drawing and a projects folder, a running module session, and helpers that lay out the assembly tests'
// substation project or make the trees a cloud returns.
#pragma once

#include "ModuleFixture.h"
#include "module/CommandTable.h"
#include "module/commands/Commands.h"
#include "module/exports/Exports.h"
#include "platform/host/Documents.h"
#include "platform/host/HostVariables.h"
#include "platform/params/ParameterLibrary.h"
#include "project/folders/TemplateDrawing.h"
#include "support/FileSystem.h"
#include "support/Locations.h"

#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>

inline std::string AssemblyDrawing(const std::string& name) {
    std::string bytes;
    QxFs::ReadBytes(QxFs::FromNative(std::string(QX_TEST_DATA_DIR) + "/assembly/" + name), bytes);
    return bytes;
}

// Rows as "name/model/count;" in their order.
inline std::string rowsText(const BomRows& rows) {
    CString text;
    for (const BOM_INFO& row : rows) text += row.m_strRowName + u"/" + row.m_strRowModel + u"/" + row.m_strRowCount + u";";
    return text.ToUtf8();
}

// A tree's devices as "name:cabinet-no/name/type/size;" in the root's order.
inline std::string cabinetsText(const HMProjectTree_INFO& tree) {
    CString text;
    for (const HMProjectTree_INFO* device : tree.m_arrCabinets)
        text += device->m_strName + u":" + device->m_strCirNo + u"/" + device->m_strCirName + u"/" + device->m_strCirType +
                u"/" + device->m_strCirSize + u";";
    return text.ToUtf8();
}

// A tree as a cloud gives it: root, children and the root's list of devices.
inline HMProjectTree_INFO* CloudNode(HMProjectTree_INFO* parent, const CString& name, const CString& type,
                                     const CString& cirNo = u"") {
    auto* node = new HMProjectTree_INFO;
    node->m_strName = name;
    node->m_strType = type;
    node->m_strID = u"id-" + name;
    node->m_strCirNo = cirNo;
    node->m_strDataSchema = u"<NewDataSet/>";
    if (!parent) return node;
    HMProjectTree_INFO* root = parent->m_pRoot ? parent->m_pRoot : parent;
    node->m_pParent = parent;
    node->m_pRoot = root;
    parent->m_arrChildren.Add(node);
    if (type != u"100") root->m_arrCabinets.Add(node);
    return node;
}

class ProjectCommandTest : public ModuleFixture {
protected:
    void SetUp() override {
        ::unsetenv("CORVANE_COMMON_HOME");
        ::unsetenv("HEXMOOR_STORE");
        acDocManagerPtr()->reset();
        ResetHostVariables();
        install.makeFolder("My Projects");
        const std::string command = std::string(QX_SOURCE_DIR) + "/scripts/make-word-db '" + install.native() + "/Data'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_TRUE(LayOutTemplateDrawing(install.logic()));
        HMStartSession();
    }
    void TearDown() override {
        QxFreeReferGroups(g_arrReferGroups);
        QxFreeCircuits(g_arrCircuits);
        acDocManagerPtr()->reset();
        ResetHostVariables();
    }

    // A new session against the embedded BOM centre of the install folder, logged in silently as ann of acme.
    void useEmbeddedCentre() {
        HMEndSession();
        SetHexmoorBackendFactory({});
        QxLSetLoginInfo_Varnholt_CV201301(u"acme", u"ann", u"secret", u"localhost:8585");
        HMStartSession();
    }

    // The command as the host runs it: behind the session check and the exception guard.
    void run(const char16_t* name) {
        for (const ModuleCommand& command : ModuleCommands())
            if (CString(command.localName) == name) RunModuleCommand(name, command.handler);
    }
    std::vector<CString> queuedCommands() {
        std::vector<CString> texts;
        for (const PendingCommand& pending : acDocManagerPtr()->TakePendingCommands()) texts.push_back(pending.text);
        return texts;
    }

    CString projects() const { return install.logic() + u"My Projects\\"; }
    std::string projectPath(const std::string& relative) const { return "My Projects/" + relative; }
    // Every name below the projects folder in name order, folders with a trailing '/', joined by spaces.
    std::string projectsListing() const {
        const std::filesystem::path root = install.native() + "/My Projects";
        std::set<std::string> names;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
            names.insert(std::filesystem::relative(entry.path(), root).string() + (entry.is_directory() ? "/" : ""));
        std::string text;
        for (const std::string& name : names) text += (text.empty() ? "" : " ") + name;
        return text;
    }

    // "Station" with its primary diagram and the secondary drawings its circuits name; devices come apart.
    void layOutStation() {
        install.writeFile(projectPath("Station/Station.itm"), "$BEGIN NOTE OF PRJ\r\n$END NOTE OF PRJ\r\n$EOF");
        install.writeFile(projectPath("Station/一次系统图.dwg"), AssemblyDrawing("primary.dxf"));
        install.writeFile(projectPath("Station/Secondary/S1.dwg"), AssemblyDrawing("sec_s1.dxf"));
        install.writeFile(projectPath("Station/Secondary/S2.dwg"), AssemblyDrawing("sec_s2.dxf"));
        install.writeFile(projectPath("Station/Secondary/S3.dwg"), AssemblyDrawing("sec_s3.dxf"));
    }
    void layOutDevice(const std::string& name, const std::string& cabinetNo) {
        install.writeFile(projectPath("Station/" + name + "/" + name + ".prj"),
                          "$BEGIN NOTE OF PRJ\r\n$BEGIN_ONE_NOTE\r\n柜编号\r\n" + cabinetNo +
                              "\r\n$END_ONE_NOTE\r\n$END NOTE OF PRJ\r\n$BEGIN CONTENT OF PRJ\r\n$END CONTENT OF PRJ\r\n$EOF");
        install.writeFile(projectPath("Station/" + name + "/A.dwg"), AssemblyDrawing("device_a.dxf"));
    }
    CString stationFile() const { return projects() + u"Station\\Station.itm"; }
    // The rows the centre (or the cloud) gives for a cabinet of Station.
    BomRows centreRows(const CString& cabinet) {
        BomRows rows;
        EXPECT_TRUE(QxGetHMBomsArray(rows, stationFile(), cabinet, u""));
        return rows;
    }
};
