// Reading an Access file through libmdb into the wire form. This is the only code that calls libmdb, and
// it runs in a child process (see AccessSnapshot.cpp).
#include "support/Encoding.h"
#include "support/database/AccessWire.h"
#include "support/database/SqlText.h"

#include <mdbtools.h>

#include <cstdlib>
#include <vector>

namespace {

// Room for one bound value: a memo of 64K characters in UTF-8.
constexpr size_t kBindSize = 1u << 18;

// libmdb 1.0 converts Jet 3 text from the code page in the file's header (CP1252 when it names none) and
// takes the target charset from $MDBICONV. The Windows application's Jet 3 files hold text in the legacy
// code page, and we want UTF-8 whatever the environment says.
void useUtf8Text(MdbHandle* mdb) {
    const std::string source = mdb->f->jet_version == MDB_VER_JET3 ? LegacyCodePage() : "UCS-2LE";
    const iconv_t in = iconv_open("UTF-8", source.c_str());
    const iconv_t out = iconv_open(source.c_str(), "UTF-8");
    if (in == reinterpret_cast<iconv_t>(-1) || out == reinterpret_cast<iconv_t>(-1)) {
        if (in != reinterpret_cast<iconv_t>(-1)) iconv_close(in);
        if (out != reinterpret_cast<iconv_t>(-1)) iconv_close(out);
        return;
    }
    mdb_iconv_close(mdb);
    mdb->iconv_in = in;
    mdb->iconv_out = out;
}

int kindOfColumn(int mdbType) {
    switch (mdbType) {
    case MDB_BOOL: return QX_KIND_BOOLEAN;
    case MDB_BYTE: return QX_KIND_UNSIGNED_TINYINT;
    case MDB_INT: return QX_KIND_SMALLINT;
    case MDB_LONGINT: return QX_KIND_INTEGER;
    case MDB_MONEY: return QX_KIND_CURRENCY;
    case MDB_FLOAT: return QX_KIND_SINGLE;
    case MDB_DOUBLE: return QX_KIND_DOUBLE;
    case MDB_DATETIME: return QX_KIND_DATE;
    case MDB_BINARY: return QX_KIND_BINARY;
    case MDB_TEXT: return QX_KIND_VARWCHAR;
    case MDB_OLE: return QX_KIND_LONGVARBINARY;
    case MDB_MEMO: return QX_KIND_LONGVARWCHAR;
    case MDB_REPID: return QX_KIND_GUID;
    case MDB_NUMERIC: return QX_KIND_NUMERIC;
    default: return 0;
    }
}

// Columns whose value libmdb gives as text through a binding; the others are read from the row itself or
// not at all (binary data).
bool isBoundAsText(int mdbType) {
    switch (mdbType) {
    case MDB_BOOL:
    case MDB_BYTE:
    case MDB_INT:
    case MDB_LONGINT:
    case MDB_DATETIME:
    case MDB_TEXT:
    case MDB_MEMO:
    case MDB_REPID:
    case MDB_NUMERIC: return true;
    default: return false;
    }
}

// A fixed-size number straight from the row on the current page, so that no formatting can change it.
bool rawBytesInPage(const MdbHandle* mdb, const MdbColumn* col, int size) {
    return col->cur_value_len == size && col->cur_value_start >= 0 &&
           static_cast<size_t>(col->cur_value_start) + static_cast<size_t>(size) <= sizeof mdb->pg_buf;
}

void writeValue(AccessWire::Writer& w, MdbHandle* mdb, const MdbColumn* col, const std::vector<char>& bound) {
    using namespace AccessWire;
    const int type = col->col_type;
    if (isBoundAsText(type)) {
        const std::string text(bound.data(), strnlen(bound.data(), bound.size()));
        if (type == MDB_BOOL) {
            w.u8(kInteger);
            w.i64(text == "1" ? -1 : 0);  // Jet's true, as the provider hands it over
        } else if (type == MDB_BYTE || type == MDB_INT || type == MDB_LONGINT) {
            if (text.empty()) {
                w.u8(kNull);
                return;
            }
            w.u8(kInteger);
            w.i64(std::strtoll(text.c_str(), nullptr, 10));
        } else if (type == MDB_NUMERIC) {
            if (text.empty()) {
                w.u8(kNull);
                return;
            }
            w.u8(kReal);
            w.f64(std::strtod(text.c_str(), nullptr));
        } else {
            w.u8(kText);
            w.text(text);
        }
        return;
    }
    const unsigned char* page = mdb->pg_buf;
    if (type == MDB_DOUBLE && rawBytesInPage(mdb, col, 8)) {
        w.u8(kReal);
        w.f64(mdb_get_double(const_cast<unsigned char*>(page), col->cur_value_start));
    } else if (type == MDB_FLOAT && rawBytesInPage(mdb, col, 4)) {
        w.u8(kReal);
        w.f64(mdb_get_single(const_cast<unsigned char*>(page), col->cur_value_start));
    } else if (type == MDB_MONEY && rawBytesInPage(mdb, col, 8)) {
        uint64_t bits = 0;
        for (int b = 7; b >= 0; --b) bits = (bits << 8) | page[col->cur_value_start + b];
        w.u8(kReal);
        w.f64(static_cast<double>(static_cast<int64_t>(bits)) / 10000.0);
    } else {
        w.u8(kNull);
    }
}

void encodeRows(AccessWire::Writer& w, MdbHandle* mdb, MdbTableDef* table) {
    std::vector<std::vector<char>> buffers(table->num_cols);
    std::vector<int> lengths(table->num_cols, 0);
    for (unsigned c = 0; c < table->num_cols; ++c) {
        const auto* col = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, c));
        if (!isBoundAsText(col->col_type)) continue;
        buffers[c].assign(kBindSize, '\0');
        mdb_bind_column(table, static_cast<int>(c) + 1, buffers[c].data(), &lengths[c]);
    }
    mdb_rewind_table(table);
    while (mdb_fetch_row(table)) {
        w.tag(AccessWire::kRow);
        for (unsigned c = 0; c < table->num_cols; ++c)
            writeValue(w, mdb, static_cast<MdbColumn*>(g_ptr_array_index(table->columns, c)), buffers[c]);
    }
}

void encodeTable(AccessWire::Writer& w, MdbHandle* mdb, MdbCatalogEntry* entry) {
    const bool system = !mdb_is_user_table(entry);
    w.tag(AccessWire::kTable);
    w.text(entry->object_name);
    w.u8(system ? 1 : 0);
    MdbTableDef* table = system ? nullptr : mdb_read_table(entry);
    if (table && !mdb_read_columns(table)) {
        mdb_free_tabledef(table);
        table = nullptr;
    }
    w.u8(table ? 1 : 0);
    if (!table) {
        w.tag(AccessWire::kEndTable);
        return;
    }
    w.u32(table->num_cols);
    for (unsigned c = 0; c < table->num_cols; ++c) {
        const auto* col = static_cast<MdbColumn*>(g_ptr_array_index(table->columns, c));
        w.text(col->name);
        w.u32(static_cast<uint32_t>(kindOfColumn(col->col_type)));
    }
    encodeRows(w, mdb, table);
    w.tag(AccessWire::kEndTable);
    mdb_free_tabledef(table);
}

} // namespace

bool EncodeAccessTables(std::string& bytes, std::string& wire) {
    MdbHandle* mdb = mdb_open_buffer(bytes.data(), bytes.size(), MDB_NOFLAGS);
    if (!mdb) return false;
    useUtf8Text(mdb);
    mdb_set_date_fmt(mdb, "%Y-%m-%d %H:%M:%S");
    mdb_set_boolean_fmt_numbers(mdb);
    mdb_set_bind_size(mdb, kBindSize);
    if (!mdb_read_catalog(mdb, MDB_TABLE)) {
        mdb_close(mdb);
        return false;
    }
    AccessWire::Writer w(wire);
    for (unsigned i = 0; i < mdb->num_catalog; ++i) {
        auto* entry = static_cast<MdbCatalogEntry*>(g_ptr_array_index(mdb->catalog, i));
        if (entry->object_type == MDB_TABLE) encodeTable(w, mdb, entry);
    }
    w.tag(AccessWire::kEnd);
    mdb_close(mdb);
    return true;
}
