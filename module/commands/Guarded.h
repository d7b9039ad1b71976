// The boundary between a command or export and the host: nothing thrown inside passes it.
#pragma once

#include "drawing/DrawingReads.h"
#include "support/CString.h"

#include <exception>

// Tells the person that `name` stopped on an unexpected error.
void ReportUnexpectedError(const CString& name, const char* what);

// Runs a command body; an exception is reported through the host and ends the command. Each drawing is
// read once for the length of the command (and of an export below).
void RunGuarded(const CString& name, void (*body)());

// Runs an export body; on an exception it is reported and `failure` is the result.
template <typename Result, typename Body>
Result RunExportGuarded(const CString& name, Result failure, Body&& body) {
    const CDrawingReadScope reads;
    try {
        return body();
    } catch (const std::exception& error) {
        ReportUnexpectedError(name, error.what());
    } catch (...) {
        ReportUnexpectedError(name, "unknown error");
    }
    return failure;
}
