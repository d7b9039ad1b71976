// The dry run's rows as a workbook (libxlsxwriter): a summary sheet of the project's parts, then one sheet
// per device.
#include "ProjectTables.h"
#include "SheetNames.h"

#include "support/NumberText.h"

#include <xlsxwriter.h>

#include <cstdio>
#include <map>
#include <unistd.h>
#include <vector>

namespace {

const char* const kRowColumns[] = {"kind", "label", "name", "model", "count", "remark", "code"};
const char* const kSummaryColumns[] = {"name", "model", "code", "count", "devices"};

// One part of the summary: a name and model, with its total over the project.
struct SummaryPart {
    CString name;
    CString model;
    CString code;
    long long count = 0;
    int devices = 0;
};

class Workbook {
public:
    explicit Workbook(const std::string& path) : m_book(workbook_new(path.c_str())) {
        if (m_book) {
            m_bold = workbook_add_format(m_book);
            format_set_bold(m_bold);
        }
    }
    ~Workbook() {
        if (m_book) lxw_workbook_free(m_book);  // a way out before Close: nothing is written
    }
    Workbook(const Workbook&) = delete;
    Workbook& operator=(const Workbook&) = delete;

    bool IsOpen() const { return m_book != nullptr; }
    // Writes the file and frees the book.
    lxw_error Close() {
        const lxw_error result = workbook_close(m_book);
        m_book = nullptr;
        return result;
    }

    // A sheet under the name, made valid and unique as Excel judges names.
    lxw_worksheet* AddSheet(const CString& wanted) { return workbook_add_worksheet(m_book, m_names.Take(wanted).c_str()); }
    void Header(lxw_worksheet* sheet, const char* const* columns, int count) {
        for (int column = 0; column < count; ++column) worksheet_write_string(sheet, 0, static_cast<lxw_col_t>(column), columns[column], m_bold);
        worksheet_set_column(sheet, 0, static_cast<lxw_col_t>(count - 1), 16, nullptr);
    }

private:
    lxw_workbook* m_book;
    lxw_format* m_bold = nullptr;
    CSheetNames m_names;
};

void writeText(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const CString& text) {
    worksheet_write_string(sheet, row, column, text.ToUtf8().c_str(), nullptr);
}

// A count that is a plain number goes in as a number, so that the office can add it up; other text as text.
void writeCount(lxw_worksheet* sheet, lxw_row_t row, lxw_col_t column, const CString& count) {
    bool digits = !count.IsEmpty();
    for (const char16_t ch : count.str()) digits = digits && ch >= u'0' && ch <= u'9';
    if (digits && count.GetLength() <= 9)
        worksheet_write_number(sheet, row, column, QxToInt(count), nullptr);
    else
        writeText(sheet, row, column, count);
}

lxw_row_t writeRows(lxw_worksheet* sheet, lxw_row_t row, const char* kind, const BomRows& rows) {
    for (const BOM_INFO& bom : rows) {
        worksheet_write_string(sheet, row, 0, kind, nullptr);
        writeText(sheet, row, 1, bom.m_strRowLabel);
        writeText(sheet, row, 2, bom.m_strRowName);
        writeText(sheet, row, 3, bom.m_strRowModel);
        writeCount(sheet, row, 4, bom.m_strRowCount);
        writeText(sheet, row, 5, bom.m_strRowRemark);
        writeText(sheet, row, 6, bom.m_strRowCode);
        ++row;
    }
    return row;
}

std::vector<SummaryPart> summarise(const ProjectDryRun& run) {
    std::vector<SummaryPart> parts;
    std::map<std::pair<std::u16string, std::u16string>, size_t> index;
    for (const HMProjectTree_INFO* device : run.m_pTree->m_arrCabinets) {
        std::map<size_t, bool> seenHere;
        for (const BomRows* rows : {&device->m_arrPrimaryBom, &device->m_arrSecondaryBom}) {
            for (const BOM_INFO& row : *rows) {
                const auto key = std::make_pair(row.m_strRowName.str(), row.m_strRowModel.str());
                auto found = index.find(key);
                if (found == index.end()) {
                    found = index.emplace(key, parts.size()).first;
                    parts.push_back({row.m_strRowName, row.m_strRowModel, row.m_strRowCode});
                }
                SummaryPart& part = parts[found->second];
                if (part.code.IsEmpty()) part.code = row.m_strRowCode;
                part.count += static_cast<long long>(QxToInt(row.m_strRowCount)) * device->m_nCabCount;
                if (!seenHere[found->second]) ++part.devices;
                seenHere[found->second] = true;
            }
        }
    }
    return parts;
}

bool writeSummary(Workbook& book, const ProjectDryRun& run) {
    lxw_worksheet* sheet = book.AddSheet(u"Summary");
    if (!sheet) return false;
    book.Header(sheet, kSummaryColumns, 5);
    lxw_row_t row = 1;
    for (const SummaryPart& part : summarise(run)) {
        writeText(sheet, row, 0, part.name);
        writeText(sheet, row, 1, part.model);
        writeText(sheet, row, 2, part.code);
        worksheet_write_number(sheet, row, 3, static_cast<double>(part.count), nullptr);
        worksheet_write_number(sheet, row, 4, part.devices, nullptr);
        ++row;
    }
    return true;
}

bool writeDevices(Workbook& book, const ProjectDryRun& run) {
    for (const HMProjectTree_INFO* device : run.m_pTree->m_arrCabinets) {
        lxw_worksheet* sheet = book.AddSheet(DevicePathInTree(*device));
        if (!sheet) return false;
        book.Header(sheet, kRowColumns, 7);
        const lxw_row_t next = writeRows(sheet, 1, "primary", device->m_arrPrimaryBom);
        writeRows(sheet, next, "secondary", device->m_arrSecondaryBom);
    }
    return true;
}

} // namespace

bool WriteProjectWorkbook(const ProjectDryRun& run, const std::string& path, std::string& why) {
    // Written beside the target and renamed over it, so that a failure leaves no half-written workbook.
    const std::string temporary = path + ".qxtmp-" + std::to_string(::getpid());
    {
        Workbook book(temporary);
        if (!book.IsOpen()) {
            why = "the workbook cannot be made";
            return false;
        }
        if (!writeSummary(book, run) || !writeDevices(book, run)) {
            why = "a sheet cannot be added";
            return false;  // the book is freed unwritten
        }
        if (const lxw_error error = book.Close(); error != LXW_NO_ERROR) {
            why = lxw_strerror(error);
            std::remove(temporary.c_str());
            return false;
        }
    }
    if (std::rename(temporary.c_str(), path.c_str()) != 0) {
        why = "the workbook cannot be put in place";
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}
