// qxinspect device PRJ: what a BOM submit gives one device. The primary diagram of the top project folder
// above the device is scanned, the device node is made by the commands' own code (from its Hexmoor.xml for
// a project the centre knows, else from its .prj), and the device's own drawing rows and the groups its
// cabinet numbers name are merged into it. Shows the node's
// rows, the messages of a failed cabinet check (the boxes still go to standard error) and the flag.
#include "AssemblyJson.h"
#include "TreeJson.h"
#include "Views.h"
#include "drawing/ExtractionState.h"
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/merge/DeviceBomMerge.h"
#include "platform/host/HostOutput.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileSystem.h"
#include "support/FileUtils.h"
#include "support/PathText.h"

#include <iostream>

namespace {

// Keeps the texts of the boxes shown, and shows them as before.
class BoxRecorder final : public IHostOutput {
public:
    BoxRecorder() : m_previous(HostOutput()) { SetHostOutput(this); }
    ~BoxRecorder() override { SetHostOutput(&m_previous); }
    BoxRecorder(const BoxRecorder&) = delete;
    BoxRecorder& operator=(const BoxRecorder&) = delete;

    void Print(const CString& text) override { m_previous.Print(text); }
    void MessageBox(const CString& text, const CString& caption, unsigned style) override {
        texts.Add(text);
        m_previous.MessageBox(text, caption, style);
    }

    CStringArray texts;

private:
    IHostOutput& m_previous;
};

// The highest folder above the device that is a project folder (holds "<name>.itm"); the device's parent
// folder when none is.
CString topProjectFolder(const CString& deviceFolder) {
    CString top = GetParentPath(deviceFolder);
    for (CString folder = top; !folder.IsEmpty(); folder = GetParentPath(folder)) {
        const CString name = GetFileNameOfPath(folder);
        if (name.IsEmpty() || !IsFileInOwnFolder(folder + u"\\" + name + u".itm")) break;
        top = folder;
    }
    return top + u"\\";
}

// The device node as the command makes it: from the device's own Hexmoor.xml, as HMBomSubmit does, when
// the centre knows the project (its folder holds a Hexmoor.xml); else from the .prj, as HMItmSubmit does.
// Either way the device's drawing rows are merged with the groups of the last scan.
void loadDevice(const CString& prjPath, const CString& projectFolder, HMProjectTree_INFO& node) {
    if (!FileExists(projectFolder + u"Hexmoor.xml")) {
        LoadDeviceFromPrj(prjPath, node);
        QxMergeDeviceBom(&node);
        return;
    }
    const CString deviceFolder = GetParentPath(prjPath);
    node.m_strName = GetFileNameOfPath(deviceFolder);
    node.m_strType = u"0";
    LoadNodeFromDocument(GetParentPath(deviceFolder) + u"\\", &node, true);
}

assemblyjson::json rowsJson(const BomRows& rows) {
    assemblyjson::json out = assemblyjson::json::array();
    for (const BOM_INFO& row : rows) out.push_back(BomRowToJson(row));
    return out;
}

int showDevice(const std::string& file) {
    const CString prjPath = QxFs::FromNative(file);
    if (!IsPrjFile(prjPath) || !QxFs::Exists(prjPath) || QxFs::IsFolder(prjPath)) {
        std::cerr << "qxinspect: " << file << " is no device file (.prj) that can be opened\n";
        return kInputUnreadable;
    }
    const CString projectFolder = topProjectFolder(GetParentPath(prjPath));
    QxScanPrimaryDiagram(projectFolder);

    HMProjectTree_INFO node;
    g_bBomCheckFailed = false;
    CStringArray messages;
    {
        BoxRecorder boxes;
        loadDevice(prjPath, projectFolder, node);
        messages = boxes.texts;
    }
    const assemblyjson::json document{{"prj", assemblyjson::NativePath(prjPath)},
                                      {"projectFolder", assemblyjson::NativePath(projectFolder)},
                                      {"groups", g_arrReferGroups.GetSize()},
                                      {"m_strID", node.m_strID.ToUtf8()},
                                      {"m_strName", node.m_strName.ToUtf8()},
                                      {"m_strCirNo", node.m_strCirNo.ToUtf8()},
                                      {"m_nCabCount", node.m_nCabCount},
                                      {"m_arrPrimaryBom", rowsJson(node.m_arrPrimaryBom)},
                                      {"m_arrSecondaryBom", rowsJson(node.m_arrSecondaryBom)},
                                      {"messages", assemblyjson::Strings(messages)},
                                      {"g_bBomCheckFailed", g_bBomCheckFailed}};
    QxFreeReferGroups(g_arrReferGroups);
    QxFreeCircuits(g_arrCircuits);
    assemblyjson::Print(document);
    return kViewRan;
}

const bool registered = RegisterInspectView({
    "device",
    "The BOM rows a submit gives a device (.prj): its own drawings and the primary diagram's groups",
    [](CLI::App& command) -> std::function<int()> {
        auto file = std::make_shared<std::string>();
        command.add_option("PRJ", *file, "the device file")->required();
        return [file] { return showDevice(*file); };
    },
});

} // namespace
