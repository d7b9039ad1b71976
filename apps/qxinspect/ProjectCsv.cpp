// The dry run's rows as CSV.
#include "ProjectTables.h"

namespace {

std::string field(const CString& value) {
    std::string text = value.ToUtf8();
    if (text.find_first_of(",\"\r\n") == std::string::npos) return text;
    std::string quoted = "\"";
    for (const char ch : text) {
        if (ch == '"') quoted += '"';
        quoted += ch;
    }
    return quoted + '"';
}

void addRows(std::string& csv, const CString& device, const char* kind, const BomRows& rows) {
    for (const BOM_INFO& row : rows) {
        csv += field(device) + ',' + kind;
        for (const CString* value : {&row.m_strRowLabel, &row.m_strRowName, &row.m_strRowModel, &row.m_strRowCount,
                                     &row.m_strRowRemark, &row.m_strRowCode})
            csv += ',' + field(*value);
        csv += '\n';
    }
}

} // namespace

std::string ProjectRowsCsv(const ProjectDryRun& run) {
    std::string csv = "device,kind,label,name,model,count,remark,code\n";
    for (const HMProjectTree_INFO* device : run.m_pTree->m_arrCabinets) {
        const CString path = DevicePathInTree(*device);
        addRows(csv, path, "primary", device->m_arrPrimaryBom);
        addRows(csv, path, "secondary", device->m_arrSecondaryBom);
    }
    return csv;
}
