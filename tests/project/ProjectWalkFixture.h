// A temporary install folder (with the demo's word list and the template drawing), a projects folder, a
// cloud client whose saveXml writes real files, and the printed output, for the walks between trees and
// folders.
#pragma once

#include "common/CapturedOutput.h"
#include "common/ShellRun.h"
#include "common/ScriptedBackend.h"
#include "common/TempFolder.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "platform/InstallPath.h"
#include "project/folders/TemplateDrawing.h"
#include "support/FileSystem.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <set>
#include <string>

// Rows as "name/model/count/remark;".
inline CString rowsText(const BomRows& rows) {
    CString text;
    for (const BOM_INFO& row : rows)
        text += row.m_strRowName + u"/" + row.m_strRowModel + u"/" + row.m_strRowCount + u"/" + row.m_strRowRemark +
                u";";
    return text;
}
// Each node of a list as one line: "name(type)#id cabinet-no/name/type/size P:primary rows S:secondary rows".
inline std::string describe(const CArray<HMProjectTree_INFO*, HMProjectTree_INFO*>& nodes) {
    CString text;
    for (const HMProjectTree_INFO* node : nodes)
        text += node->m_strName + u"(" + node->m_strType + u")#" + node->m_strID + u" " + node->m_strCirNo + u"/" +
                node->m_strCirName + u"/" + node->m_strCirType + u"/" + node->m_strCirSize + u" P:" +
                rowsText(node->m_arrPrimaryBom) + u" S:" + rowsText(node->m_arrSecondaryBom) + u"\n";
    return text.ToUtf8();
}

// Reads a Hexmoor.xml as the commands do.
inline std::unique_ptr<HMProjectTree_INFO> readDocument(const CString& path) {
    auto node = std::make_unique<HMProjectTree_INFO>();
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlLoadFile(document, path);
    HMXmlReadNode(document, node.get());
    return node;
}

class ProjectWalkTest : public testing::Test {
protected:
    // The cloud gives every node a schema block; a document without one does not read back.
    static constexpr const char16_t* kDataSchema = u"<NewDataSet><Table F_Name=\"x\"/></NewDataSet>";

    void SetUp() override {
        ::unsetenv("CORVANE_COMMON_HOME");
        SetCorvaneInstallDirOverride(install.logic());
        install.makeFolder("Data");
        const std::string command = std::string(QX_SOURCE_DIR) + "/scripts/make-word-db '" + install.native() + "/Data'";
        ASSERT_EQ(std::system(command.c_str()), 0);
        ASSERT_TRUE(LayOutTemplateDrawing(install.logic()));
    }
    void TearDown() override { SetCorvaneInstallDirOverride(CString()); }

    static HMProjectTree_INFO* addChild(HMProjectTree_INFO& parent, const CString& name, const CString& type,
                                        const CString& id = u"") {
        auto* child = new HMProjectTree_INFO;
        child->m_strName = name;
        child->m_strType = type;
        child->m_strID = id.IsEmpty() ? u"id-" + name : id;
        child->m_strDataSchema = kDataSchema;
        child->m_pParent = &parent;
        child->m_pRoot = parent.m_pRoot ? parent.m_pRoot : &parent;
        parent.m_arrChildren.Add(child);
        return child;
    }
    static HMProjectTree_INFO* addDevice(HMProjectTree_INFO& parent, const CString& name, const CString& cirNo) {
        HMProjectTree_INFO* device = addChild(parent, name, u"0");
        device->m_pRoot->m_arrCabinets.Add(device);
        device->m_strCirNo = cirNo;
        device->m_strCirName = u"进线柜";
        device->m_strCirType = u"KYN28";
        device->m_strCirSize = u"800*1500*2300";
        return device;
    }

    // The sub-project "变电站" (ID P1) as the cloud gives it: device K01, sub-project 二期 holding K11, device K02.
    static void makeSubstation(HMProjectTree_INFO& project) {
        project.m_strName = u"变电站";
        project.m_strType = u"100";
        project.m_strID = u"P1";
        project.m_strDataSchema = kDataSchema;
        addDevice(project, u"K01", u"1,2");
        addDevice(*addChild(project, u"二期", u"100"), u"K11", u"11");
        addDevice(project, u"K02", u"3");
    }

    // Every name below a folder, as relative paths with '/', folders with a trailing '/'.
    static std::set<std::string> contents(const std::string& native) {
        std::set<std::string> names;
        const std::string out = RunShellCommand("cd '" + native + "' && find . -mindepth 1 -printf '%P%y\\n'").out;
        for (size_t at = 0, end; (end = out.find('\n', at)) != std::string::npos; at = end + 1) {
            const std::string entry = out.substr(at, end - at - 1);
            names.insert(out[end - 1] == 'd' ? entry + "/" : entry);
        }
        return names;
    }

    // Python's strict parser as the oracle: each file must be one well-formed document; gives for each the
    // Node's Name, ID and Type as "Name|ID|Type;", or "" when a file does not parse.
    static std::string strictlyParsedNodes(const std::vector<std::string>& files) {
        std::string command =
            "/usr/bin/python3 -c 'import sys, xml.etree.ElementTree as ET\n"
            "for p in sys.argv[1:]:\n"
            "    n = ET.parse(p).getroot().find(\"Node\")\n"
            "    sys.stdout.write(\"%s|%s|%s;\" % (n.get(\"Name\"), n.get(\"ID\"), n.get(\"Type\")))'";
        for (const std::string& file : files) command += " '" + file + "'";
        const ShellRun run = RunShellCommand(command);
        return run.status == 0 ? run.out : std::string();
    }

    std::string templateBytes() const { return install.readFile("Support/TEMPLATE/图纸.DWG"); }

    TempFolder install;
    TempFolder projects;
    CapturedOutput output;
    std::shared_ptr<CloudScript> script = std::make_shared<CloudScript>();
    CHexmoorInteFace client{std::make_unique<ScriptedBackend>(script)};
};
