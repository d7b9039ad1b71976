// The stored string forms of a circuit.
#include "drawing/primary/CircuitValues.h"

namespace {

constexpr char16_t kAt = u'\uFF20';
constexpr char16_t kOpenNote = u'\u300E';
constexpr char16_t kCloseNote = u'\u300F';

CString behindFirstAt(const CString& text) {
    const int at = text.Find(kAt);
    return at < 0 ? text : text.Mid(at + 1);
}

CString cutAtNote(const CString& text) {
    const int note = text.Find(kOpenNote);
    return note < 0 ? text : text.Left(note);
}

CString noteOf(const CString& text) {
    const int note = text.Find(kOpenNote);
    if (note < 0) return {};
    CString annotation = text.Mid(note + 1);
    annotation.Remove(kCloseNote);
    return annotation;
}

} // namespace

CString QxCircuitValue(const CString& stored) {
    return cutAtNote(behindFirstAt(stored));
}

CString QxCircuitNumber(const CString& stored) {
    const int at = stored.Find(kAt);
    const CString prefix = at < 0 ? CString() : stored.Left(at);
    const CString number = cutAtNote(at < 0 ? stored : stored.Mid(at + 1));
    if (prefix.IsEmpty()) return number;
    return number + u"(" + prefix + u")";
}

CString QxCircuitAnnotation(const CString& stored) {
    return noteOf(behindFirstAt(stored));
}

bool QxParseCircuitRow(const CString& stored, CircuitRow& row) {
    const CString text = behindFirstAt(stored);
    const int bars = text.Find(u"|||");
    if (bars < 0) return false;
    row.name = text.Left(bars);
    if (row.name.IsEmpty()) return false;
    CString value = text.Mid(bars + 3);
    value.Trim(u'|');
    row.value = cutAtNote(value);
    row.annotationOrValue = text.Find(kOpenNote) < 0 ? row.value : noteOf(text);
    return true;
}
