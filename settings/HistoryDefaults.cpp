// The 286 default values of the history store, in index order.
//
// An index means what the dialog that uses it says; the store only keeps the texts. The defaults are
// laid out in blocks, so that a dialog takes a run of indexes of the kind it needs:
//
//   index     count  values                                   kind
//   0-24        25   "1"                                      switches that start on
//   25-49       25   "0"                                      switches that start off
//   50-99       50   ""                                       texts typed last (names, codes, folders)
//   100-119     20   "800" "2200" "600" "12" "2.5" "0.7"      numbers of the cabinet and drawing dialogs
//                    "-5.0" "0.00" "3.5" "5" "10" "100" "50"
//                    "20" "1.5" "3.0" "0" "1" "2" "4"
//   120-129     10   "A" "WL" "C30-15L(1.5)" "KA" "QF" "FU"   texts given in advance: phase, wire-number
//                    "TA" "XT" "KM" "HL"                      prefix, cable model, device letter codes
//   130-189     60   "0"                                      switches that start off
//   190-269     80   ""                                       texts typed last
//   270-285     16   "1" to "16"                              counting texts of the numbered rows
#include "settings/HistoryDefaults.h"

#include "support/Format.h"

#include <initializer_list>

namespace {

void addRepeated(CStringArray& values, int count, const char16_t* value) {
    for (int i = 0; i < count; ++i) values.Add(value);
}

void addEach(CStringArray& values, std::initializer_list<const char16_t*> list) {
    for (const char16_t* value : list) values.Add(value);
}

} // namespace

void GetHistoryDefaults(CStringArray& values) {
    values.RemoveAll();
    addRepeated(values, 25, u"1");
    addRepeated(values, 25, u"0");
    addRepeated(values, 50, u"");
    addEach(values, {u"800", u"2200", u"600", u"12", u"2.5", u"0.7", u"-5.0", u"0.00", u"3.5", u"5", u"10", u"100",
                     u"50", u"20", u"1.5", u"3.0", u"0", u"1", u"2", u"4"});
    addEach(values, {u"A", u"WL", u"C30-15L(1.5)", u"KA", u"QF", u"FU", u"TA", u"XT", u"KM", u"HL"});
    addRepeated(values, 60, u"0");
    addRepeated(values, 80, u"");
    for (int i = 1; i <= 16; ++i) values.Add(QxFormat(u"%d", i));
}
