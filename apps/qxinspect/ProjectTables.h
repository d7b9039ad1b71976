// The rows of a project's dry run as an office hands a BOM on: CSV text, or a workbook with a summary sheet
// and one sheet per device.
#pragma once

#include "ProjectDryRun.h"

#include <string>

// One line of column names, then one line per row: device, primary or secondary, label, name, model, count,
// remark, code. UTF-8, lines ended by LF, fields quoted where they hold a comma, a quote or a line break.
std::string ProjectRowsCsv(const ProjectDryRun& run);

// Writes the workbook to `path` (a native path). The first sheet, "Summary", adds up each part (same name
// and model) over the project, each device's count taken m_nCabCount times; then one sheet per device.
// False, with the reason, when the file cannot be written.
bool WriteProjectWorkbook(const ProjectDryRun& run, const std::string& path, std::string& why);
