// Walking a local project through its .itm and .prj files.
#include "project/tree/FoldersToTree.h"

#include "drawing/merge/DeviceBomMerge.h"
#include "project/ProjectFiles.h"
#include "support/FileUtils.h"
#include "support/PathText.h"

#include <array>
#include <memory>

namespace {

struct CabinetNote {
    const char16_t* name;
    CString HMProjectTree_INFO::*field;
};

constexpr std::array<CabinetNote, 4> kCabinetNotes{{
    {u"柜编号", &HMProjectTree_INFO::m_strCirNo},
    {u"柜名称", &HMProjectTree_INFO::m_strCirName},
    {u"柜型号", &HMProjectTree_INFO::m_strCirType},
    {u"柜体尺寸", &HMProjectTree_INFO::m_strCirSize},
}};

// The name of the .itm or .prj less its four-character extension.
CString nodeNameOfFile(const CString& path) {
    const CString fileName = GetFileNameOfPath(path);
    return fileName.Left(fileName.GetLength() - 4);
}

std::unique_ptr<HMProjectTree_INFO> makeNode(const CString& path, const CString& type, HMProjectTree_INFO* parent,
                                             HMProjectTree_INFO* root) {
    auto node = std::make_unique<HMProjectTree_INFO>();
    node->m_strName = nodeNameOfFile(path);
    node->m_strType = type;
    node->m_strPath = GetParentPath(path) + u"\\";
    node->m_pParent = parent;
    node->m_pRoot = root;
    return node;
}

// The four cabinet notes; a block whose value line is missing gives an empty value, not its end marker.
void readCabinetNotes(const CString& prjPath, HMProjectTree_INFO& device) {
    CStringArray lines;
    ReadFileLines(prjPath, lines, true);
    for (int i = 0; i < lines.GetSize() - 3; ++i) {
        if (lines[i] != PRJ_BEGIN_ONE_NOTE) continue;
        for (const CabinetNote& note : kCabinetNotes) {
            if (lines[i + 1] != note.name) continue;
            const CString& value = lines[i + 2];
            device.*note.field = value == PRJ_END_ONE_NOTE ? CString() : CString(value).Trim();
        }
    }
}

} // namespace

void BuildTreeFromFolders(const CString& itmPath, HMProjectTree_INFO* node) {
    if (!node) return;
    HMProjectTree_INFO* root = node->m_pRoot ? node->m_pRoot : node;

    CStringArray subProjects;
    ListSubProjects(itmPath, subProjects);
    for (const CString& path : subProjects) {
        auto project = makeNode(path, u"100", node, root);
        project->m_strCirNo = project->m_strName;
        HMProjectTree_INFO* added = project.release();
        node->m_arrChildren.Add(added);
        BuildTreeFromFolders(path, added);
    }

    CStringArray devices;
    ListDevices(itmPath, devices);
    for (const CString& path : devices) {
        auto device = std::make_unique<HMProjectTree_INFO>();
        device->m_pParent = node;
        device->m_pRoot = root;
        HMProjectTree_INFO* added = device.release();
        root->m_arrCabinets.Add(added);
        node->m_arrChildren.Add(added);
        LoadDeviceFromPrj(path, *added);
    }
}

void LoadDeviceFromPrj(const CString& prjPath, HMProjectTree_INFO& device) {
    device.m_strName = nodeNameOfFile(prjPath);
    device.m_strType = u"0";
    device.m_strPath = GetParentPath(prjPath) + u"\\";
    readCabinetNotes(prjPath, device);
    QxGetDeviceSecondaryRows(prjPath, device.m_arrSecondaryBom);
}
