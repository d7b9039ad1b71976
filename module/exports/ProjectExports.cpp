// The exports that read or refresh whole project trees.
#include "exchange/HexmoorProducts.h"
#include "exchange/HexmoorReader.h"
#include "exchange/HexmoorWriter.h"
#include "module/Session.h"
#include "module/commands/CurrentProject.h"
#include "module/commands/Guarded.h"
#include "module/commands/ProjectTrees.h"
#include "module/exports/CabinetNumbers.h"
#include "module/exports/Exports.h"
#include "platform/host/HostOutput.h"
#include "project/tree/FoldersToTree.h"
#include "support/FileSystem.h"
#include "support/Locations.h"

namespace {

// Replaces a device's rows by those of its BOM block, through a document written in memory for it.
void unpackRows(HMProjectTree_INFO* device) {
    CXmlDocument document;
    HMXmlCreateDocument(document);
    HMXmlWriteNode(document, device);
    HMXmlReadProducts(document, device);
}

CurrentProject projectOfFile(const CString& projectFile) {
    return ResolveProjectFile(projectFile.IsEmpty() ? GetRecentProject() : projectFile);
}

} // namespace

QX_MODULE_EXPORT bool QxLoginCloudServer() {
    return RunExportGuarded(u"QxLoginCloudServer", false, [] { return EnsureHMLogin(); });
}

QX_MODULE_EXPORT HMProjectTree_INFO* QxGetHMProjectRemote() {
    return RunExportGuarded(u"QxGetHMProjectRemote", static_cast<HMProjectTree_INFO*>(nullptr), []() -> HMProjectTree_INFO* {
        if (!EnsureHMLogin()) return nullptr;
        // Held until handed over, so that a failure halfway frees it.
        CloudTree tree = TakeCloudTree(*g_pHexmoorClient, g_pHexmoorClient->getProjectInfo(nullptr));
        if (!tree) return nullptr;
        for (HMProjectTree_INFO* device : tree->m_arrCabinets) unpackRows(device);
        return tree.release();
    });
}

QX_MODULE_EXPORT void QxFreeTreeInfo(HMProjectTree_INFO* tree) {
    RunExportGuarded(u"QxFreeTreeInfo", false, [tree] {
        if (g_pHexmoorClient)
            g_pHexmoorClient->freeTreeInfo(tree);
        else
            delete tree;  // what freeTreeInfo does; a tree outliving the session is still given back
        return true;
    });
}

QX_MODULE_EXPORT bool QxGetHMProjectInfo(HMProjectTree_INFO* tree, CString projectFile) {
    return RunExportGuarded(u"QxGetHMProjectInfo", false, [tree, &projectFile] {
        if (!tree) return false;
        if (!EnsureHMLogin()) return false;
        if (projectFile.IsEmpty()) projectFile = GetRecentProject();
        const CurrentProject project = ResolveProjectFile(projectFile);
        if (!project.HasDocument()) {
            acutPrintf(u"%s\n", QxFormat(u"项目%s的Hexmoor相关信息不存在，无法从Hexmoor调用明细！", QxFs::ToNativeText(projectFile)));
            return false;
        }
        CXmlDocument document;
        HMXmlCreateDocument(document);
        HMXmlLoadFile(document, project.m_strDocument);
        HMXmlReadNode(document, tree);
        LinkChildrenAndLoad(tree, project.m_strFolder, false);
        return true;
    });
}

QX_MODULE_EXPORT bool QxHMBomSubmit(HMProjectTree_INFO* tree) {
    return RunExportGuarded(u"QxHMBomSubmit", false, [tree] {
        if (!EnsureHMLogin() || !tree) return false;
        if (!g_pHexmoorClient->submitBom(tree, true)) return false;
        // The rows become those that the cloud accepted and left in each BOM block.
        for (HMProjectTree_INFO* device : tree->m_arrCabinets) {
            device->m_arrPrimaryBom.RemoveAll();
            device->m_arrSecondaryBom.RemoveAll();
            unpackRows(device);
        }
        return true;
    });
}

QX_MODULE_EXPORT bool QxGetHMBomsArray(BomRows& rows, CString projectFile, CString cabinetNumber, CString) {
    return RunExportGuarded(u"QxGetHMBomsArray", false, [&] {
        if (!EnsureHMLogin()) return false;
        const CurrentProject project = projectOfFile(projectFile);
        if (!project.HasDocument()) return g_pHexmoorClient->getImportBoms(u"", u"", rows);

        CString projectId;
        CString cabinetId;
        {
            CXmlDocument document;
            const LocalTree tree = ReadProjectRoot(project.m_strDocument, document);
            projectId = tree->m_strID;
            LinkChildrenAndLoad(tree.get(), project.m_strFolder, false);
            if (!cabinetNumber.IsEmpty()) cabinetId = FindCabinetId(*tree, cabinetNumber);
        }
        return g_pHexmoorClient->getImportBoms(projectId, cabinetId, rows);
    });
}
