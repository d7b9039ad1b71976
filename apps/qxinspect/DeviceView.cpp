// qxinspect device PRJ: what a BOM submit gives one device. The primary diagram of the top project folder
// above the device is scanned, the device node is made from the .prj notes as the folder walk makes it, and
// the device's own drawing rows and the groups its cabinet numbers name are merged into it. Shows the node's
// rows, the messages of a failed cabinet check (the boxes still go to standard error) and the flag.
#include "AssemblyJson.h"
#include "TreeJson.h"
#include "Views.h"
#include "drawing/ExtractionState.h"
#include "drawing/assembly/PrimaryScan.h"
#include "drawing/merge/DeviceBomMerge.h"
#include "platform/host/HostOutput.h"
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

// The device node as the walk over folders makes it: name, type "0", folder, and the four cabinet notes.
void readDeviceNode(const CString& prjPath, HMProjectTree_INFO& node) {
    node.m_strName = RemoveFileExtension(GetFileNameOfPath(prjPath));
    node.m_strType = u"0";
    node.m_strPath = GetParentPath(prjPath) + u"\\";
    CStringArray lines;
    ReadFileLines(prjPath, lines, true);
    for (int i = 0; i < lines.GetSize() - 3; ++i) {
        if (lines[i] != u"$BEGIN_ONE_NOTE") continue;
        CString value = lines[i + 2];
        value.Trim();
        if (lines[i + 1] == u"柜编号") node.m_strCirNo = value;
        else if (lines[i + 1] == u"柜名称") node.m_strCirName = value;
        else if (lines[i + 1] == u"柜型号") node.m_strCirType = value;
        else if (lines[i + 1] == u"柜体尺寸") node.m_strCirSize = value;
    }
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
    readDeviceNode(prjPath, node);
    g_bBomCheckFailed = false;
    CStringArray messages;
    {
        BoxRecorder boxes;
        QxGetDeviceSecondaryRows(prjPath, node.m_arrSecondaryBom);
        QxMergeDeviceBom(&node);
        messages = boxes.texts;
    }
    const assemblyjson::json document{{"prj", assemblyjson::NativePath(prjPath)},
                                      {"projectFolder", assemblyjson::NativePath(projectFolder)},
                                      {"groups", g_arrReferGroups.GetSize()},
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
