// CHexmoorInteFace: the cloud client, forwarding to its backend.
#include "platform/cloud/HexmoorClient.h"

#include "platform/cloud/HexmoorXmlFile.h"
#include "platform/cloud/http/HttpBomCentre.h"

CHexmoorInteFace::CHexmoorInteFace() : m_backend(MakeHexmoorBackend()) {}

CHexmoorInteFace::CHexmoorInteFace(std::unique_ptr<IHexmoorBackend> backend) : m_backend(std::move(backend)) {}

CHexmoorInteFace::~CHexmoorInteFace() = default;

void CHexmoorInteFace::selectBackend() {
    const bool server = IsHttpEndpoint(m_strServer);
    if (server ? m_backendEndpoint == m_strServer : m_backendEndpoint.IsEmpty()) return;
    m_backend = server ? std::make_unique<CHttpBomCentre>(m_strServer) : MakeHexmoorBackend();
    m_backendEndpoint = server ? m_strServer : CString();
}

int CHexmoorInteFace::Login() {
    selectBackend();
    return m_backend->Login(*this);
}

int CHexmoorInteFace::autoLogin() {
    selectBackend();
    return m_backend->autoLogin(*this);
}
bool CHexmoorInteFace::isLogin() { return m_backend->isLogin(); }

bool CHexmoorInteFace::UserInfoCollect(CString item, CString key, CString text) {
    return m_backend->UserInfoCollect(item, key, text);
}

CString CHexmoorInteFace::getProjectName(CString id) { return m_backend->getProjectName(id); }

HMProjectTree_INFO* CHexmoorInteFace::getProjectInfo(HMProjectTree_INFO* local) { return m_backend->getProjectInfo(local); }

HMProjectTree_INFO* CHexmoorInteFace::getOneCabProjectInfo() { return m_backend->getOneCabProjectInfo(); }

void CHexmoorInteFace::freeTreeInfo(HMProjectTree_INFO* tree) { delete tree; }

bool CHexmoorInteFace::saveXml(CString path, CString xml) { return SaveHexmoorXml(path, xml); }

bool CHexmoorInteFace::submitItm(HMProjectTree_INFO* tree) { return m_backend->submitItm(tree); }

bool CHexmoorInteFace::submitBom(HMProjectTree_INFO* tree, bool flag) { return m_backend->submitBom(tree, flag); }

void CHexmoorInteFace::bomCmp(HMProjectTree_INFO* tree) { m_backend->bomCmp(tree); }

bool CHexmoorInteFace::submitOneCabCir2(HMProjectTree_INFO* tree) { return m_backend->submitOneCabCir2(tree); }

bool CHexmoorInteFace::getDqBoms(BomRows& rows) { return m_backend->getDqBoms(rows); }

bool CHexmoorInteFace::getImportBoms(CString projectId, CString cabinetId, BomRows& rows) {
    return m_backend->getImportBoms(projectId, cabinetId, rows);
}
